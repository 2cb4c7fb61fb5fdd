// Texts that the toolkit has given to a client, and keeps until the client unlocks them.
#ifndef LXBRIDGE_OUTSIDE_XMP_TEXT_STORE_H_
#define LXBRIDGE_OUTSIDE_XMP_TEXT_STORE_H_

#include <cstddef>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "clients/xmp/xmp_abi.h"
#include "outside/xmp/errors.h"

namespace velto {

class TextStore {
 public:
  // A copy with a zero byte at its end.
  XMPTextOut keep(std::string_view text) {
    if (text.size() >= UINT32_MAX) throw ToolkitError(ErrorId::kTooLong, "the text is too long to be handed out");
    char* place = take(text.size() + 1);
    if (!text.empty()) std::memcpy(place, text.data(), text.size());
    place[text.size()] = '\0';
    return {place, static_cast<std::uint32_t>(text.size())};
  }

  // The text itself, where it is long enough that copying it costs more than keeping it.
  XMPTextOut keepWhole(std::string&& text) {
    if (text.size() < kBlockSize / 4 || text.size() >= UINT32_MAX) return keep(text);
    const std::string& kept = whole_.emplace_back(std::move(text));
    return {kept.c_str(), static_cast<std::uint32_t>(kept.size())};
  }

  // Ends all texts given so far.
  void unlock() noexcept {
    blocks_.clear();
    whole_.clear();
    left_ = sizeof first_;
    next_ = first_;
  }

 private:
  static constexpr std::size_t kBlockSize = 4096;

  char* take(std::size_t size) {
    if (size > left_) {
      const std::size_t blockSize = size > kBlockSize / 4 ? size : kBlockSize;
      blocks_.push_back(std::make_unique_for_overwrite<char[]>(blockSize));
      char* block = blocks_.back().get();
      if (blockSize == size) return block;  // A long text has a block of its own; the one in use stays in use.
      next_ = block;
      left_ = blockSize;
    }
    char* place = next_;
    next_ += size;
    left_ -= size;
    return place;
  }

  // The few short texts between two unlockings cost no allocation.
  char first_[256];
  char* next_ = first_;
  std::size_t left_ = sizeof first_;
  std::vector<std::unique_ptr<char[]>> blocks_;
  std::vector<std::string> whole_;  // Long ones: their bytes stay where they are when the vector grows.
};

// The same for the procedures without an object: a thread's own, so that one thread's unlocking leaves the others'
// texts alone. Nothing runs when a thread ends, so that the library can be unloaded before: a thread that has given
// back what it got leaves nothing.
class ThreadTexts {
 public:
  XMPTextOut keep(std::string_view text) {
    if (text.size() >= UINT32_MAX) throw ToolkitError(ErrorId::kTooLong, "the text is too long to be handed out");
    char* place = first_ + used_;
    if (text.size() < sizeof first_ - used_) {
      used_ += text.size() + 1;
    } else {
      auto* block = static_cast<Block*>(::operator new(sizeof(Block) + text.size() + 1));
      blocks_ = new (block) Block{blocks_};
      place = reinterpret_cast<char*>(block + 1);
    }
    if (!text.empty()) std::memcpy(place, text.data(), text.size());
    place[text.size()] = '\0';
    return {place, static_cast<std::uint32_t>(text.size())};
  }

  void unlock() noexcept {
    while (Block* block = blocks_) {
      blocks_ = block->next;
      ::operator delete(block);
    }
    used_ = 0;
  }

 private:
  struct Block {
    Block* next;
  };

  char first_[256] = {};
  std::size_t used_ = 0;
  Block* blocks_ = nullptr;
};

}  // namespace velto

#endif  // LXBRIDGE_OUTSIDE_XMP_TEXT_STORE_H_

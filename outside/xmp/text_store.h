// Texts that the toolkit returns to a client, kept until the client unlocks them.
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
  // A copy with a terminating zero byte.
  XMPTextOut keep(std::string_view text) {
    if (text.size() >= UINT32_MAX) throw ToolkitError(ErrorId::kTooLong, "the text is too long");
    char* place = take(text.size() + 1);
    if (!text.empty()) std::memcpy(place, text.data(), text.size());
    place[text.size()] = '\0';
    return {place, static_cast<std::uint32_t>(text.size())};
  }

  // Keeps the text itself, if copying it would cost more.
  XMPTextOut keepWhole(std::string&& text) {
    if (text.size() < kBlockSize / 4 || text.size() >= UINT32_MAX) return keep(text);
    const std::string& kept = whole_.emplace_back(std::move(text));
    return {kept.c_str(), static_cast<std::uint32_t>(kept.size())};
  }

  // Invalidates all texts returned so far.
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
      if (blockSize == size) return block;  // A long text has its own block; the current block stays in use.
      next_ = block;
      left_ = blockSize;
    }
    char* place = next_;
    next_ += size;
    left_ -= size;
    return place;
  }

  // The few short texts between two unlockings need no allocation.
  char first_[256];
  char* next_ = first_;
  std::size_t left_ = sizeof first_;
  std::vector<std::unique_ptr<char[]>> blocks_;
  std::vector<std::string> whole_;  // Long texts; their bytes do not move when the vector grows.
};

// The same for procedures without an object: one store per thread, so that unlocking in one thread does not affect the
// texts of others. Nothing runs at thread end, so the library can be unloaded before; a thread that has unlocked its
// texts leaves no memory.
class ThreadTexts {
 public:
  XMPTextOut keep(std::string_view text) {
    if (text.size() >= UINT32_MAX) throw ToolkitError(ErrorId::kTooLong, "the text is too long");
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

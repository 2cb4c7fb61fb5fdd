// Encoding of jobs and results.
#include "tools/lxbridge/worker_protocol.h"

#include <cstdint>
#include <cstring>

namespace lxbridge::command {

namespace {

struct JobHeader {
  std::uint32_t nameLength;
  std::uint32_t walked;
};

constexpr std::uint8_t kFailed = 1;
constexpr std::uint8_t kPassedOver = 2;
constexpr std::uint8_t kFault = 4;

struct ResultHeader {
  std::uint32_t magic;  // Overwritten memory is unlikely to match it.
  std::uint16_t statusLength;
  std::uint8_t kind;
  std::uint8_t flags;
  std::uint64_t outLength;
  std::uint64_t messagesLength;
  std::uint64_t fileBytes;
  std::uint32_t errorLength;
  std::uint32_t tallyLength;
};
static_assert(sizeof(ResultHeader) == 40);

constexpr std::uint32_t kMagic = 0x4C785265;
constexpr std::uint64_t kLongestPart = std::uint64_t{1} << 33;

template <typename Header>
void AppendHeader(const Header& header, std::string* bytes) {
  bytes->append(reinterpret_cast<const char*>(&header), sizeof header);
}

template <typename Header>
bool PeekHeader(std::string_view bytes, std::size_t at, Header* header) {
  if (bytes.size() - at < sizeof *header) return false;
  std::memcpy(header, bytes.data() + at, sizeof *header);
  return true;
}

}  // namespace

void AppendJob(const Input& input, std::string* bytes) {
  AppendHeader(JobHeader{static_cast<std::uint32_t>(input.name.size()), input.walked ? 1U : 0U}, bytes);
  bytes->append(input.name);
}

Taken TakeJob(std::string_view bytes, std::size_t* at, Input* input) {
  JobHeader header;
  if (!PeekHeader(bytes, *at, &header) || bytes.size() - *at - sizeof header < header.nameLength)
    return Taken::kNothing;
  input->name.assign(bytes.substr(*at + sizeof header, header.nameLength));
  input->walked = header.walked != 0;
  input->problem.clear();
  *at += sizeof header + header.nameLength;
  return Taken::kOne;
}

void AppendResult(const FileResult& result, std::string* bytes) {
  ResultHeader header = {};
  header.magic = kMagic;
  header.statusLength = static_cast<std::uint16_t>(result.status.size());
  header.kind = result.kind;
  header.flags = static_cast<std::uint8_t>((result.failed ? kFailed : 0) | (result.passedOver ? kPassedOver : 0));
  header.outLength = result.out.size();
  header.messagesLength = result.messages.size();
  header.fileBytes = result.bytes;
  header.errorLength = static_cast<std::uint32_t>(result.error.size());
  header.tallyLength = static_cast<std::uint32_t>(result.tally.size());
  AppendHeader(header, bytes);
  bytes->append(result.status, 0, header.statusLength).append(result.messages).append(result.out);
  bytes->append(result.error).append(result.tally);
}

void AppendFault(std::string_view what, std::string* bytes) {
  ResultHeader header = {};
  header.magic = kMagic;
  header.flags = kFault;
  header.messagesLength = what.size();
  AppendHeader(header, bytes);
  bytes->append(what);
}

Taken TakeResult(std::string_view bytes, std::size_t* at, FileResult* result) {
  ResultHeader header;
  if (!PeekHeader(bytes, *at, &header)) return Taken::kNothing;
  if (header.magic != kMagic || header.outLength > kLongestPart || header.messagesLength > kLongestPart) {
    return Taken::kNonsense;
  }
  const std::uint64_t length =
      header.statusLength + header.messagesLength + header.outLength + header.errorLength + header.tallyLength;
  std::size_t from = *at + sizeof header;
  if (bytes.size() - from < length) return Taken::kNothing;
  const auto take = [&](std::uint64_t count, std::string* to) {
    to->assign(bytes.substr(from, static_cast<std::size_t>(count)));
    from += static_cast<std::size_t>(count);
  };
  take(header.statusLength, &result->status);
  take(header.messagesLength, &result->messages);
  take(header.outLength, &result->out);
  take(header.errorLength, &result->error);
  take(header.tallyLength, &result->tally);
  result->kind = header.kind;
  result->failed = (header.flags & kFailed) != 0;
  result->passedOver = (header.flags & kPassedOver) != 0;
  result->bytes = header.fileBytes;
  *at = from;
  return (header.flags & kFault) != 0 ? Taken::kFault : Taken::kOne;
}

}  // namespace lxbridge::command

#include "kit/readers/inflate.h"

#include <algorithm>
#include <cstddef>

#include "kit/base/memory.h"

#if LXBRIDGE_ZLIB
#include <zlib.h>
#endif
#if LXBRIDGE_BROTLI
#include <brotli/decode.h>
#endif

namespace {

// The output of a decoder: bytes that do not fit the buffer are only counted.
struct Output {
  std::uint8_t* buffer;
  std::int64_t size;   // Of the buffer.
  std::int64_t limit;  // Decoding stops when the output exceeds this.
  std::int64_t total;  // Output so far.
  std::uint8_t rest[16 << 10];
};

// The space for the decoder's next bytes: up to the limit plus one byte, so that exceeding it is noticed.
[[maybe_unused]] std::uint8_t* NextSpace(Output* out, std::size_t* space) noexcept {
  if (out->total < out->size) {
    *space = static_cast<std::size_t>(std::min<std::int64_t>(out->size - out->total, 1 << 30));
    return out->buffer + out->total;
  }
  *space = static_cast<std::size_t>(std::min<std::int64_t>(out->limit + 1 - out->total, sizeof(out->rest)));
  return out->rest;
}

#if LXBRIDGE_ZLIB
void* ZlibAlloc(void*, uInt count, uInt size) noexcept {
  return LxAlloc(std::size_t{count} * size);
}

void ZlibFree(void*, void* block) noexcept {
  LxFree(block);
}

bool DecodeDeflate(const std::uint8_t* bytes, std::int32_t length, bool raw, Output* out) noexcept {
  z_stream decoder = {};
  decoder.zalloc = ZlibAlloc;
  decoder.zfree = ZlibFree;
  decoder.next_in = const_cast<Bytef*>(bytes);
  decoder.avail_in = static_cast<uInt>(length);
  if (inflateInit2(&decoder, raw ? -MAX_WBITS : MAX_WBITS) != Z_OK) return false;
  int status = Z_OK;
  while (status == Z_OK && out->total <= out->limit) {
    std::size_t space = 0;
    decoder.next_out = NextSpace(out, &space);
    decoder.avail_out = static_cast<uInt>(space);
    status = inflate(&decoder, Z_NO_FLUSH);
    out->total += static_cast<std::int64_t>(space - decoder.avail_out);
  }
  inflateEnd(&decoder);
  return status == Z_STREAM_END && out->total <= out->limit;
}
#endif

#if LXBRIDGE_BROTLI
void* BrotliAlloc(void*, std::size_t size) noexcept {
  return LxAlloc(size);
}

void BrotliFree(void*, void* block) noexcept {
  LxFree(block);
}

bool DecodeBrotli(const std::uint8_t* bytes, std::int32_t length, Output* out) noexcept {
  BrotliDecoderState* decoder = BrotliDecoderCreateInstance(BrotliAlloc, BrotliFree, nullptr);
  if (decoder == nullptr) return false;
  auto left = static_cast<std::size_t>(length);
  BrotliDecoderResult status = BROTLI_DECODER_RESULT_NEEDS_MORE_OUTPUT;
  while (status == BROTLI_DECODER_RESULT_NEEDS_MORE_OUTPUT && out->total <= out->limit) {
    std::size_t space = 0;
    std::uint8_t* at = NextSpace(out, &space);
    const std::size_t size = space;
    status = BrotliDecoderDecompressStream(decoder, &left, &bytes, &space, &at, nullptr);
    out->total += static_cast<std::int64_t>(size - space);
  }
  BrotliDecoderDestroyInstance(decoder);
  return status == BROTLI_DECODER_RESULT_SUCCESS && out->total <= out->limit;
}
#endif

bool Decode([[maybe_unused]] const std::uint8_t* bytes, [[maybe_unused]] std::int32_t length, LxCompressedForm form,
            [[maybe_unused]] Output* out) noexcept {
  switch (form) {
#if LXBRIDGE_ZLIB
    case kLxZlibStream:
      return DecodeDeflate(bytes, length, /*raw=*/false, out);
    case kLxRawDeflateStream:
      return DecodeDeflate(bytes, length, /*raw=*/true, out);
#endif
#if LXBRIDGE_BROTLI
    case kLxBrotliStream:
      return DecodeBrotli(bytes, length, out);
#endif
    default:
      return false;
  }
}

// Decodes into the block, which may be too small, and charges the decoder's output to the budget. Returns the length of
// the whole output, or -1.
std::int64_t DecodeInto(LxBlock* block, std::int64_t limit, LxParseContext* context, LxCompressedForm form,
                        const std::uint8_t* bytes, std::int32_t length) noexcept {
  Output out;
  out.buffer = LxDetachedBytes(block);
  out.size = block->length;
  out.limit = limit;
  out.total = 0;
  const bool whole = Decode(bytes, length, form, &out);
  context->budget.inflatedBytes -= std::min(out.total, context->budget.inflatedBytes);
  return whole ? out.total : -1;
}

}  // namespace

LxBlock* LxInflateBlock(LxBlockCache* cache, LxParseContext* context, LxCompressedForm form, const std::uint8_t* bytes,
                        std::int32_t length) noexcept {
  // Brotli's decoder allocates and clears a window of up to 16 MB, however small its output is.
  constexpr std::int64_t kBrotliWindow = 16 << 20;
  if (form == kLxBrotliStream) context->budget.inflatedBytes -= kBrotliWindow;
  const std::int64_t limit =
      std::min({kLxInflatedPerByte * length, std::int64_t{kLxLargestInflated}, context->budget.inflatedBytes});
  if (limit <= 0) return nullptr;
  // Texts mostly inflate to less than eight times their size. If the output is larger, it is counted first and then
  // decoded again, so the memory used never exceeds the output.
  constexpr std::int64_t kFirstTry = 8;
  constexpr std::int64_t kFirstTryAtLeast = 16 << 10;
  std::int64_t size = std::min(limit, std::max(kFirstTry * length, kFirstTryAtLeast));
  for (int attempt = 0; attempt < 2; ++attempt) {
    LxBlock* block = LxNewDetachedBlock(cache, static_cast<std::int32_t>(size));
    if (block == nullptr) return nullptr;
    const std::int64_t total = DecodeInto(block, limit, context, form, bytes, length);
    if (total >= 0 && total <= size) {
      block->length = static_cast<std::int32_t>(total);
      context->budget.valueBytes += kLxValueBytesPerFileByte * total;
      return block;
    }
    LxFreeDetachedBlock(cache, block);
    if (total < 0) return nullptr;
    size = total;
  }
  return nullptr;
}

bool LxHasZlib() noexcept {
  return LXBRIDGE_ZLIB != 0;
}

bool LxHasBrotli() noexcept {
  return LXBRIDGE_BROTLI != 0;
}

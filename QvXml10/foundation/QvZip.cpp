#include "foundation/QvZip.h"

#include "foundation/QvException.h"
#include "internal/Inflate.h"

#include <zlib.h>

#include <algorithm>
#include <cstddef>
#include <limits>
#include <memory>

namespace QvXmlLib10 {

namespace {

// Window bits: 15 plus 32 lets inflate recognise a zlib or a gzip header; 15 plus 16
// makes deflate write a gzip wrapper.
const int kInflateAnyWindowBits = 15 + 32;
const int kGzipWindowBits = 15 + 16;
const int kCompressionLevel = 1;
const int kMemoryLevel = 8;
// The first output round when nothing tells the size of the result.
const size_t kRoundBytes = 65536;
// zlib counts input and output of one call in 32 bits.
const size_t kMaxCallBytes = std::numeric_limits<uInt>::max();
// Deflate expands at most about 1032 to 1; a size hint beyond that is not believed.
const size_t kMaxInflateRatio = 1032;

uInt CallBytes(const unsigned char* position, const unsigned char* end) {
    return static_cast<uInt>(std::min<size_t>(static_cast<size_t>(end - position), kMaxCallBytes));
}

// A gzip member ends with the length of its content modulo 2^32. When the data starts
// like a gzip member, that length is a good first capacity; it is only a hint, since the
// stream may be damaged, longer than 4 GiB or followed by other members.
size_t GzipSizeHint(const unsigned char* data, size_t length) {
    if (length < 18 || data[0] != 0x1F || data[1] != 0x8B || data[2] != Z_DEFLATED) return 0;
    const unsigned char* trailer = data + length - 4;
    const size_t hint = static_cast<size_t>(trailer[0]) | static_cast<size_t>(trailer[1]) << 8 |
                        static_cast<size_t>(trailer[2]) << 16 | static_cast<size_t>(trailer[3]) << 24;
    return hint / kMaxInflateRatio <= length ? hint : 0;
}

// Inflates `data` into `out` and tells the length of the result. False, with `out`
// untouched, unless the data holds one complete zlib or gzip stream at its start.
// The result grows geometrically, so that collecting it takes linear time and the
// buffer stays below twice the result.
bool Inflate(const unsigned char* data, size_t length, std::unique_ptr<unsigned char[]>& out, size_t& outLength) {
    z_stream stream{};
    stream.next_in = const_cast<unsigned char*>(data);
    if (inflateInit2(&stream, kInflateAnyWindowBits) != Z_OK) return false;
    struct End {
        z_stream& stream;
        ~End() { inflateEnd(&stream); }
    } end{stream};

    const unsigned char* const inputEnd = data + length;
    size_t capacity = std::max(GzipSizeHint(data, length) + 1, kRoundBytes);
    std::unique_ptr<unsigned char[]> buffer(new unsigned char[capacity]);
    size_t produced = 0;
    int result = Z_OK;
    while (result == Z_OK) {
        if (produced == capacity) {
            const size_t grown = 2 * capacity;
            std::unique_ptr<unsigned char[]> larger(new unsigned char[grown]);
            std::copy(buffer.get(), buffer.get() + produced, larger.get());
            buffer = std::move(larger);
            capacity = grown;
        }
        stream.avail_in = CallBytes(stream.next_in, inputEnd);
        stream.next_out = buffer.get() + produced;
        stream.avail_out = CallBytes(stream.next_out, buffer.get() + capacity);
        const uInt offered = stream.avail_out;
        result = inflate(&stream, Z_NO_FLUSH);
        produced += offered - stream.avail_out;
    }
    if (result != Z_STREAM_END) return false;
    out = std::move(buffer);
    outLength = produced;
    return true;
}

[[noreturn]] void ThrowCompressionFailure(int code) {
    throw CQvException(FormatString("Failed to compress data. [Error Code: %d]", code));
}

// Deflates `data` into an array of the input's size: one pass without flushing, then
// one finish. Throws when the result does not fit, since such input does not shrink.
void Deflate(const unsigned char* data, size_t length, CompressionType type, std::unique_ptr<unsigned char[]>& out,
             size_t& outLength) {
    std::unique_ptr<unsigned char[]> buffer(new unsigned char[length]);
    z_stream stream{};
    const int init = type == CompressionType_GZip ? deflateInit2(&stream, kCompressionLevel, Z_DEFLATED,
                                                                 kGzipWindowBits, kMemoryLevel, Z_DEFAULT_STRATEGY)
                                                  : deflateInit(&stream, kCompressionLevel);
    if (init != Z_OK) ThrowCompressionFailure(init);

    const unsigned char* const inputEnd = data + length;
    unsigned char* const outputEnd = buffer.get() + length;
    stream.next_in = const_cast<unsigned char*>(data);
    stream.next_out = buffer.get();
    const auto refill = [&]() {
        stream.avail_in = CallBytes(stream.next_in, inputEnd);
        stream.avail_out = CallBytes(stream.next_out, outputEnd);
    };
    // More than one call of a kind only for data beyond the 32-bit counters of zlib.
    int result;
    do {
        refill();
        result = deflate(&stream, Z_NO_FLUSH);
    } while (result == Z_OK && stream.next_in != inputEnd && stream.next_out != outputEnd);
    do {
        refill();
        result = deflate(&stream, Z_FINISH);
    } while (result == Z_OK && stream.next_out != outputEnd);
    deflateEnd(&stream);

    if (result != Z_STREAM_END) ThrowCompressionFailure(result);
    outLength = static_cast<size_t>(stream.next_out - buffer.get());
    out = std::move(buffer);
}

bool IsCompression(CompressionType type) { return type == CompressionType_GZip || type == CompressionType_ZLib; }

} // namespace

namespace Internal {
bool InflateComplete(const unsigned char* data, size_t length, std::unique_ptr<unsigned char[]>& out,
                     size_t& outLength) {
    return Inflate(data, length, out, outLength);
}
} // namespace Internal

CQvZip::CQvZip() : CInstanceMonitor("CQvZip") {}

CQvZip::~CQvZip() = default;

void CQvZip::Decompress(unsigned char** data, unsigned long* length) {
    if (!data || !*data || !length) return;
    std::unique_ptr<unsigned char[]> result;
    size_t resultLength = 0;
    if (!Inflate(*data, *length, result, resultLength)) return;
    delete[] * data;
    *data = result.release();
    *length = static_cast<unsigned long>(resultLength);
}

void CQvZip::Compress(unsigned char** data, unsigned long* length, CompressionType type) {
    if (!IsCompression(type) || !data || !length) return;
    std::unique_ptr<unsigned char[]> result;
    size_t resultLength = 0;
    Deflate(*data, *data ? *length : 0, type, result, resultLength);
    delete[] * data;
    *data = result.release();
    *length = static_cast<unsigned long>(resultLength);
}

void CQvZip::CompressData(CBinaryData& data, CompressionType type) {
    if (data.GetLength() == 0) return;
    unsigned long length = data.GetLength();
    std::unique_ptr<unsigned char[]> bytes(data.ReleaseData());
    if (IsCompression(type)) {
        std::unique_ptr<unsigned char[]> compressed;
        size_t compressedLength = 0;
        Deflate(bytes.get(), length, type, compressed, compressedLength);
        bytes = std::move(compressed);
        length = static_cast<unsigned long>(compressedLength);
    }
    // The new value adopts the array only once it is built.
    data = CBinaryData(bytes.get(), length, true);
    (void)bytes.release();
}

} // namespace QvXmlLib10

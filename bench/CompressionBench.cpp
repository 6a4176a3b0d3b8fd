// Compressed documents: loading a gzip stream against inflating it with zlib alone plus
// loading the text, and ToXmlStream with gzip against ToXmlStream plus zlib's compress2
// at level 1 of the same bytes.

#include "BenchSupport.h"

#include <QvXml10/QvXml10.h>

#include "orders/Orders.h"

#include <benchmark/benchmark.h>
#include <zlib.h>

#include <cstdio>
#include <map>
#include <string>
#include <utility>
#include <vector>

using namespace QvXmlLib10;
using namespace QvXmlBench;

namespace {

const size_t LOAD_SIZES[] = {10 << 20, 100 << 20};
const size_t WRITE_SIZE = 10 << 20;

// The gzip or zlib form of the document of about `bytes` bytes, made by the library.
const std::vector<unsigned char>& CompressedDocument(size_t bytes, CompressionType type = CompressionType_GZip) {
    static std::map<std::pair<size_t, CompressionType>, std::vector<unsigned char>> documents;
    std::vector<unsigned char>& compressed = documents[{bytes, type}];
    if (!compressed.empty()) return compressed;
    CBinaryData data(OrderDocument(bytes).c_str());
    CQvZip().CompressData(data, type);
    compressed.assign(data.GetData(), data.GetData() + data.GetLength());
    return compressed;
}

void BM_LoadGzip(benchmark::State& state) {
    const std::vector<unsigned char>& gzip = CompressedDocument(static_cast<size_t>(state.range(0)));
    std::vector<unsigned char> bytes(gzip);
    for (auto _ : state) {
        CXmlDocument document;
        document.LoadXmlStream(bytes.data(), static_cast<unsigned long>(bytes.size()));
        benchmark::DoNotOptimize(document.GetDocumentElement());
    }
}

// zlib alone, into a buffer of the known size.
void BM_ZlibInflate(benchmark::State& state) {
    const size_t size = static_cast<size_t>(state.range(0));
    std::vector<unsigned char> gzip(CompressedDocument(size));
    std::vector<unsigned char> text(OrderDocument(size).size());
    for (auto _ : state) {
        z_stream stream{};
        inflateInit2(&stream, 15 + 16);
        stream.next_in = gzip.data();
        stream.avail_in = static_cast<uInt>(gzip.size());
        stream.next_out = text.data();
        stream.avail_out = static_cast<uInt>(text.size());
        if (inflate(&stream, Z_FINISH) != Z_STREAM_END) state.SkipWithError("inflate failed");
        inflateEnd(&stream);
    }
}

void BM_LoadText(benchmark::State& state) {
    const std::string& text = OrderDocument(static_cast<size_t>(state.range(0)));
    std::vector<unsigned char> bytes(text.begin(), text.end());
    for (auto _ : state) {
        CXmlDocument document;
        document.LoadXmlStream(bytes.data(), static_cast<unsigned long>(bytes.size()));
        benchmark::DoNotOptimize(document.GetDocumentElement());
    }
}

// A purchase order of about `bytes` bytes of text, read into the example's classes.
// The orders live as long as the program: the classes' tables may be gone at its exit.
const PurchaseOrders::CPurchaseOrder& Order(size_t bytes) {
    static std::map<size_t, PurchaseOrders::CPurchaseOrder*> orders;
    PurchaseOrders::CPurchaseOrder*& stored = orders[bytes];
    if (stored) return *stored;
    stored = new PurchaseOrders::CPurchaseOrder();
    PurchaseOrders::CPurchaseOrder& order = *stored;
    std::string text = "<purchaseOrder xmlns=\"urn:example:purchase-orders\" id=\"A-1\"><issuedBy>desk</issuedBy>"
                       "<customer><name>Ada</name><account>7</account></customer><pickupPoint>Kiosk 4</pickupPoint>";
    for (size_t n = 1; text.size() < bytes; ++n)
        text += "<line number=\"" + std::to_string(n) + "\"><sku>AB-" + std::to_string(1000 + n % 9000) +
                "</sku><description>Difference engine gears, set " + std::to_string(n) + "</description><quantity>" +
                std::to_string(1 + n % 20) + "</quantity><unitPriceCents>" + std::to_string(125 + n % 997) +
                "</unitPriceCents></line>";
    text += "<comment>none</comment><payment xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
            "xsi:type=\"InvoicePayment\"><amountCents>300</amountCents><dueDays>30</dueDays></payment>"
            "</purchaseOrder>";
    order.FromXml(text.c_str());
    return order;
}

void BM_ToXmlStream(benchmark::State& state) {
    const PurchaseOrders::CPurchaseOrder& order = Order(static_cast<size_t>(state.range(0)));
    const CompressionType compression = static_cast<CompressionType>(state.range(1));
    for (auto _ : state)
        benchmark::DoNotOptimize(order.ToXmlStream(true, true, XmlEncoding_UTF8, EOLType_LF,
                                                   CXmlSerializationContext::m_defaultContext, compression));
}

void BM_ZlibCompress2(benchmark::State& state) {
    const CBinaryData text = Order(static_cast<size_t>(state.range(0))).ToXmlStream();
    std::vector<unsigned char> out(compressBound(text.GetLength()));
    for (auto _ : state) {
        uLongf length = out.size();
        if (compress2(out.data(), &length, text.GetData(), text.GetLength(), 1) != Z_OK)
            state.SkipWithError("compress2 failed");
    }
}

BENCHMARK(BM_LoadGzip)->Arg(LOAD_SIZES[0])->Arg(LOAD_SIZES[1])->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ZlibInflate)->Arg(LOAD_SIZES[0])->Arg(LOAD_SIZES[1])->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LoadText)->Arg(LOAD_SIZES[0])->Arg(LOAD_SIZES[1])->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ToXmlStream)
    ->Args({WRITE_SIZE, CompressionType_None})
    ->Args({WRITE_SIZE, CompressionType_GZip})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ZlibCompress2)->Arg(WRITE_SIZE)->Unit(benchmark::kMillisecond);

// Peak heap of one load, as a multiple of the expanded document. The caller's buffer is
// not counted.
double LoadPeak(const std::vector<unsigned char>& bytes, size_t expanded) {
    StartHeapMeter();
    {
        CXmlDocument document;
        document.LoadXmlStream(const_cast<unsigned char*>(bytes.data()), static_cast<unsigned long>(bytes.size()));
    }
    return static_cast<double>(StopHeapMeter()) / static_cast<double>(expanded);
}

const bool registered =
    (AddReport([] {
         auto& t = Timings();
         if (!t.count("BM_LoadGzip/" + std::to_string(LOAD_SIZES[0]))) return;
         std::printf("Compressed documents against zlib alone plus the uncompressed work, same run:\n");
         for (size_t size : LOAD_SIZES) {
             const std::string suffix = "/" + std::to_string(size);
             if (!t.count("BM_ZlibInflate" + suffix) || !t.count("BM_LoadText" + suffix)) continue;
             const std::string& text = OrderDocument(size);
             const std::vector<unsigned char> plain(text.begin(), text.end());
             std::printf("  %5.1f MB: gzip load cost ratio %.2f (target at most 1.10); peak heap %.2f x the "
                         "document (zlib form %.2f x, text %.2f x)\n",
                         size / 1048576.0,
                         t["BM_LoadGzip" + suffix] / (t["BM_ZlibInflate" + suffix] + t["BM_LoadText" + suffix]),
                         LoadPeak(CompressedDocument(size), text.size()),
                         LoadPeak(CompressedDocument(size, CompressionType_ZLib), text.size()),
                         LoadPeak(plain, text.size()));
         }
         const std::string size = "/" + std::to_string(WRITE_SIZE);
         const std::string gzip = "BM_ToXmlStream" + size + "/" + std::to_string(CompressionType_GZip);
         const std::string none = "BM_ToXmlStream" + size + "/" + std::to_string(CompressionType_None);
         if (t.count(gzip) && t.count(none) && t.count("BM_ZlibCompress2" + size))
             std::printf("  %5.1f MB: ToXmlStream gzip cost ratio %.2f (target at most 1.10)\n", WRITE_SIZE / 1048576.0,
                         t[gzip] / (t[none] + t["BM_ZlibCompress2" + size]));
     }),
     true);

} // namespace

// Compressed documents: loading a gzip stream against inflating it with zlib alone plus
// loading the text, and ToXmlStream with gzip against ToXmlStream plus zlib's compress2
// at level 1 of the same bytes. Each benchmark runs both ways in turn; the ratio is of
// their total times.

#include "BenchSupport.h"

#include <QvXml10/QvXml10.h>

#include "orders/Orders.h"

#include <benchmark/benchmark.h>
#include <zlib.h>

#include <chrono>
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

// Seconds that one call of `step` takes.
template <class F> double Seconds(F&& step) {
    const auto start = std::chrono::steady_clock::now();
    step();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// Total seconds of the library's way and of the way of its parts, by benchmark. The
// steps take turns in every iteration, so that the changing load of a shared machine
// falls on both ways alike.
std::map<std::string, std::pair<double, double>>& Paired() {
    static std::map<std::string, std::pair<double, double>> paired;
    return paired;
}

void Record(benchmark::State& state, const std::string& name, double library, double parts) {
    auto& total = Paired()[name];
    total.first += library;
    total.second += parts;
    state.counters["library_ms"] = 1000 * library / static_cast<double>(state.iterations());
    state.counters["parts_ms"] = 1000 * parts / static_cast<double>(state.iterations());
}

void LoadBytes(const std::vector<unsigned char>& bytes) {
    CXmlDocument document;
    document.LoadXmlStream(const_cast<unsigned char*>(bytes.data()), static_cast<unsigned long>(bytes.size()));
    benchmark::DoNotOptimize(document.GetDocumentElement());
}

// LoadXmlStream of the gzip form, against zlib's inflate of it into a ready buffer plus
// LoadXmlStream of the text.
void BM_LoadGzip(benchmark::State& state) {
    const size_t size = static_cast<size_t>(state.range(0));
    const std::vector<unsigned char>& gzip = CompressedDocument(size);
    const std::string& document = OrderDocument(size);
    const std::vector<unsigned char> text(document.begin(), document.end());
    std::vector<unsigned char> inflated(text.size());
    double library = 0, parts = 0;
    for (auto _ : state) {
        library += Seconds([&] { LoadBytes(gzip); });
        parts += Seconds([&] {
            z_stream stream{};
            inflateInit2(&stream, 15 + 16);
            stream.next_in = const_cast<unsigned char*>(gzip.data());
            stream.avail_in = static_cast<uInt>(gzip.size());
            stream.next_out = inflated.data();
            stream.avail_out = static_cast<uInt>(inflated.size());
            if (inflate(&stream, Z_FINISH) != Z_STREAM_END) state.SkipWithError("inflate failed");
            inflateEnd(&stream);
        });
        parts += Seconds([&] { LoadBytes(text); });
    }
    Record(state, "load/" + std::to_string(size), library, parts);
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

// ToXmlStream with gzip, against ToXmlStream without compression plus zlib's compress2
// at level 1 of the same bytes.
void BM_ToXmlStreamGzip(benchmark::State& state) {
    const size_t size = static_cast<size_t>(state.range(0));
    const PurchaseOrders::CPurchaseOrder& order = Order(size);
    const auto write = [&](CompressionType compression) {
        return order.ToXmlStream(true, true, XmlEncoding_UTF8, EOLType_LF, CXmlSerializationContext::m_defaultContext,
                                 compression);
    };
    std::vector<unsigned char> out(compressBound(write(CompressionType_None).GetLength()));
    double library = 0, parts = 0;
    for (auto _ : state) {
        library += Seconds([&] { benchmark::DoNotOptimize(write(CompressionType_GZip).GetData()); });
        parts += Seconds([&] {
            const CBinaryData text = write(CompressionType_None);
            uLongf length = out.size();
            if (compress2(out.data(), &length, text.GetData(), text.GetLength(), 1) != Z_OK)
                state.SkipWithError("compress2 failed");
        });
    }
    Record(state, "write/" + std::to_string(size), library, parts);
}

BENCHMARK(BM_LoadGzip)->Arg(LOAD_SIZES[0])->Arg(LOAD_SIZES[1])->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ToXmlStreamGzip)->Arg(WRITE_SIZE)->Unit(benchmark::kMillisecond);

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
         auto& paired = Paired();
         if (paired.empty()) return;
         std::printf("Compressed documents against zlib alone plus the uncompressed work, steps in turn, same run:\n");
         for (size_t size : LOAD_SIZES) {
             const auto found = paired.find("load/" + std::to_string(size));
             if (found == paired.end()) continue;
             const std::string& text = OrderDocument(size);
             const std::vector<unsigned char> plain(text.begin(), text.end());
             std::printf("  %5.1f MB: gzip load cost ratio %.2f (target at most 1.10); peak heap %.2f x the "
                         "document (zlib form %.2f x, text %.2f x)\n",
                         size / 1048576.0, found->second.first / found->second.second,
                         LoadPeak(CompressedDocument(size), text.size()),
                         LoadPeak(CompressedDocument(size, CompressionType_ZLib), text.size()),
                         LoadPeak(plain, text.size()));
         }
         const auto found = paired.find("write/" + std::to_string(WRITE_SIZE));
         if (found != paired.end())
             std::printf("  %5.1f MB: ToXmlStream gzip cost ratio %.2f (target at most 1.10)\n", WRITE_SIZE / 1048576.0,
                         found->second.first / found->second.second);
     }),
     true);

} // namespace

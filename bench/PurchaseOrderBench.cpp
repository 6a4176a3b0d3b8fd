// Reading and writing purchase orders through the example's classes, against expat's
// raw parse of the same text; writing them as Fast Infoset against writing their text.

#include "BenchSupport.h"

#include <QvXml10/QvXml10.h>

#include "orders/Orders.h"

#include <benchmark/benchmark.h>
#include <expat.h>

#include <cstdio>
#include <map>
#include <string>

using namespace QvXmlLib10;
using namespace PurchaseOrders;
using namespace QvXmlBench;

namespace {

const size_t SIZES[] = {1 << 20, 10 << 20};

// Output as the documents are written: the schema's namespace as default namespace,
// the instance and tracking namespaces declared on the root.
CXmlSerializationContext OrderContext() {
    CXmlSerializationContext context;
    context.SetDefaultNamespaceURI(TARGET_NAMESPACE);
    context.GetNamespaceAliases().Add("xsi", "http://www.w3.org/2001/XMLSchema-instance");
    context.GetNamespaceAliases().Add("trk", "urn:example:tracking");
    return context;
}

// An order of about `bytes` bytes of text, built in code: many lines with a decimal unit
// price, some with a gift note or a nil one, a card payment, the order date and delivery
// window, lists of tags and batch quantities, binary data, a big serial number and a few
// open elements and attributes.
CSmartPtr<CPurchaseOrder> BuildOrder(size_t bytes) {
    CSmartPtr<CPurchaseOrder> order(new CPurchaseOrder());
    order->SetId("PO-2026-0042");
    order->SetStatus(OrderStatus_confirmed);
    order->SetExpress(true);
    order->GetAnyAttributes()->Add("source", "web-shop", "urn:example:tracking");
    order->GetBusinessDocument()->SetIssuedBy("Order desk, Zurich");
    order->GetBusinessDocument()->SetReference("REF-7781");
    order->GetCustomer()->SetName("Ada Lovelace");
    order->GetCustomer()->SetAccount(100234);
    order->GetCustomer()->SetVip(true);
    CAddress* address = new CAddress();
    address->SetStreet("12 St James's Square");
    address->SetCity("London");
    address->SetPostcode("SW1Y 4JH");
    address->GetContact()->SetEmail("ada@example.org");
    address->GetContact()->SetPhone("+44 20 7946 0000");
    order->GetPurchaseOrderChoice()->SetShipTo(address);
    // A line is about 245 bytes of text, with its share of tags and quantities.
    const long lines = static_cast<long>(bytes / 245);
    long long total = 0;
    for (long n = 1; n <= lines; ++n) {
        CLine* line = new CLine();
        line->SetNumber(n);
        char sku[16];
        std::snprintf(sku, sizeof sku, "%c%c-%04ld", 'A' + static_cast<char>(n % 26),
                      'A' + static_cast<char>((n / 26) % 26), n % 10000);
        line->SetSku(sku);
        line->SetDescription("Difference engine gears & cams, set number " + std::to_string(n));
        line->SetQuantity(1 + n % 20);
        line->SetUnitPriceCents(125 + n % 997);
        line->SetUnitPrice(CDecimal(static_cast<int>(125 + n % 997)) / CDecimal(100));
        if (n % 5 == 0) line->SetGiftNote("With best wishes from the analytical engine team");
        if (n % 7 == 0) line->SetGiftNoteNil();
        total += line->GetQuantity() * line->GetUnitPriceCents();
        order->GetLines()->Add(line);
    }
    order->SetComment("Deliver to the back door between 9 and 17 o'clock.");
    CCardPayment* payment = new CCardPayment();
    payment->SetAmountCents(total);
    payment->SetCardHolder("A. Lovelace");
    payment->SetLast4("1815");
    order->SetPayment(payment);
    order->SetOrderDate(CConversions::dateFromString("2026-11-23Z", CWhitespaceUtils::WhitespaceRule_None));
    order->SetDeliverFrom(
        CConversions::datetimeFromString("2026-12-01T08:00:00-05:00", CWhitespaceUtils::WhitespaceRule_None));
    order->SetDeliverWithin(CConversions::durationFromString("P2DT4H", CWhitespaceUtils::WhitespaceRule_None));
    for (long n = 0; n < lines / 4; ++n) {
        order->GetTags()->Add("tag-" + std::to_string(n));
        order->GetBatchQuantities()->Add(1 + n % 9999);
    }
    order->SetAttachment(CBinaryData("Order form, scanned"));
    order->SetChecksum(CConversions::hexBinaryFromString("1C291CA3", CWhitespaceUtils::WhitespaceRule_None));
    order->SetSerialNumber(CBigInteger("1180591620717411303425"));
    for (int n = 0; n < 3; ++n) {
        const CSmartPtr<CElement> parcel = order->GetAnyElements()->Add("parcel", "urn:example:tracking");
        parcel->SetText(("RM-000-" + std::to_string(1815 + n)).c_str());
        parcel->GetAttributes()->Add("carrier", "Royal Mail", "");
    }
    return order;
}

// The text of the order of about `bytes` bytes, as ToXml writes it.
const std::string& OrderText(size_t bytes) {
    static std::map<size_t, std::string> texts;
    std::string& text = texts[bytes];
    if (text.empty()) text = BuildOrder(bytes)->ToXml(true, true, EOLType_LF, OrderContext());
    return text;
}

// Bytes of Fast Infoset and of text, by (suggested encodings, document size).
std::map<std::pair<bool, size_t>, std::pair<size_t, size_t>>& FastInfosetSizes() {
    static std::map<std::pair<bool, size_t>, std::pair<size_t, size_t>> sizes;
    return sizes;
}

void XMLCALL NoStart(void*, const XML_Char*, const XML_Char**) {}
void XMLCALL NoEnd(void*, const XML_Char*) {}
void XMLCALL NoText(void*, const XML_Char*, int) {}
void XMLCALL NoNamespaceStart(void*, const XML_Char*, const XML_Char*) {}
void XMLCALL NoNamespaceEnd(void*, const XML_Char*) {}

void BM_OrderExpatRawParse(benchmark::State& state) {
    const std::string& text = OrderText(static_cast<size_t>(state.range(0)));
    for (auto _ : state) {
        XML_Parser parser = XML_ParserCreateNS(nullptr, '|');
        XML_SetElementHandler(parser, NoStart, NoEnd);
        XML_SetNamespaceDeclHandler(parser, NoNamespaceStart, NoNamespaceEnd);
        XML_SetCharacterDataHandler(parser, NoText);
        if (XML_Parse(parser, text.data(), static_cast<int>(text.size()), 1) != XML_STATUS_OK)
            state.SkipWithError("expat failed");
        XML_ParserFree(parser);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}

void BM_OrderFromXml(benchmark::State& state) {
    const std::string& text = OrderText(static_cast<size_t>(state.range(0)));
    CPurchaseOrder order;
    for (auto _ : state) {
        order.FromXml(text.c_str());
        benchmark::DoNotOptimize(order.GetLines()->GetCount());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}

void BM_OrderToXml(benchmark::State& state) {
    const std::string& text = OrderText(static_cast<size_t>(state.range(0)));
    CPurchaseOrder order;
    order.FromXml(text.c_str());
    const CXmlSerializationContext context = OrderContext();
    for (auto _ : state) {
        const std::string written = order.ToXml(true, true, EOLType_LF, context);
        if (written.size() != text.size()) state.SkipWithError("the order was written otherwise");
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}

// Fast Infoset of the same orders, with the default options or the suggested encodings.
void OrderToFastInfoset(benchmark::State& state, bool suggestedValues) {
    const std::string& text = OrderText(static_cast<size_t>(state.range(0)));
    CPurchaseOrder order;
    order.FromXml(text.c_str());
    CXmlSerializationContext context = OrderContext();
    if (suggestedValues) context.GetFIContext().SetSuggestedValues();
    size_t size = 0;
    for (auto _ : state) {
        const CBinaryData written = order.ToFastInfosetStream(FInfoDecl_None, context);
        size = written.GetLength();
    }
    FastInfosetSizes()[{suggestedValues, static_cast<size_t>(state.range(0))}] = {size, text.size()};
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}

void BM_OrderToFastInfoset(benchmark::State& state) { OrderToFastInfoset(state, false); }
void BM_OrderToFastInfosetSuggested(benchmark::State& state) { OrderToFastInfoset(state, true); }

BENCHMARK(BM_OrderExpatRawParse)->Arg(SIZES[0])->Arg(SIZES[1])->Unit(benchmark::kMillisecond);
BENCHMARK(BM_OrderFromXml)->Arg(SIZES[0])->Arg(SIZES[1])->Unit(benchmark::kMillisecond);
BENCHMARK(BM_OrderToXml)->Arg(SIZES[0])->Arg(SIZES[1])->Unit(benchmark::kMillisecond);
BENCHMARK(BM_OrderToFastInfoset)->Arg(SIZES[0])->Arg(SIZES[1])->Unit(benchmark::kMillisecond);
BENCHMARK(BM_OrderToFastInfosetSuggested)->Arg(SIZES[0])->Arg(SIZES[1])->Unit(benchmark::kMillisecond);

const bool registered =
    (AddReport([] {
         auto& t = Timings();
         bool header = false;
         for (size_t size : SIZES) {
             const std::string suffix = "/" + std::to_string(size);
             if (!t.count("BM_OrderExpatRawParse" + suffix)) continue;
             if (!header) {
                 std::printf("Purchase orders through the generated classes against expat's raw parse, same run:\n");
                 header = true;
             }
             const double raw = t["BM_OrderExpatRawParse" + suffix];
             if (t.count("BM_OrderFromXml" + suffix))
                 std::printf("  %5.1f MB: FromXml throughput ratio %.2f (target at least 0.35)\n", size / 1048576.0,
                             raw / t["BM_OrderFromXml" + suffix]);
             if (t.count("BM_OrderToXml" + suffix))
                 std::printf("  %5.1f MB: ToXml throughput ratio %.2f (target at least 0.50)\n", size / 1048576.0,
                             raw / t["BM_OrderToXml" + suffix]);
             if (t.count("BM_OrderToFastInfoset" + suffix)) {
                 const double fi = t["BM_OrderToFastInfoset" + suffix];
                 std::printf("  %5.1f MB: ToFastInfosetStream throughput ratio %.2f (target at least 1.5)\n",
                             size / 1048576.0, raw / fi);
                 if (t.count("BM_OrderToXml" + suffix))
                     std::printf("  %5.1f MB: ToFastInfosetStream against ToXml, speed ratio %.2f (target at least "
                                 "1.0)\n",
                                 size / 1048576.0, t["BM_OrderToXml" + suffix] / fi);
             }
             if (t.count("BM_OrderToFastInfosetSuggested" + suffix))
                 std::printf("  %5.1f MB: ToFastInfosetStream with suggested encodings, throughput ratio %.2f\n",
                             size / 1048576.0, raw / t["BM_OrderToFastInfosetSuggested" + suffix]);
             for (const bool suggested : {false, true}) {
                 const auto found = FastInfosetSizes().find({suggested, size});
                 if (found == FastInfosetSizes().end()) continue;
                 std::printf("  %5.1f MB: Fast Infoset size %s against the text, ratio %.2f%s\n", size / 1048576.0,
                             suggested ? "with suggested encodings" : "with the default options",
                             static_cast<double>(found->second.first) / found->second.second,
                             suggested ? "" : " (target at most 0.40)");
             }
         }
         CleanOrdersMetaData();
     }),
     true);

} // namespace

namespace QvXmlBench {
// The order texts of this file, for the Fast Infoset benchmarks.
const std::string& PurchaseOrderText(size_t bytes) { return OrderText(bytes); }
} // namespace QvXmlBench

// Writing an object tree as XML text (ToXml, ToXmlStream in UTF-8), against the floor:
// appending the same final text to a std::string in pieces of the sizes a writer appends.

#include "BenchSupport.h"

#include <QvXml10/QvXml10.h>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>
#include <vector>

using namespace QvXmlLib10;
using namespace QvXmlBench;

namespace {

const char ORDERS_NS[] = "urn:example:orders";
const char META_NS[] = "urn:example:meta";

// Hand-written bound classes: an order book of orders with lines, written through the
// writer as generated code would.
class CLine : public CXmlObjectBase {
public:
    std::string sku, quantity, price, description;
    CXmlObjectBase* GetBase() override { return this; }
    std::string GetTargetNamespace() const override { return ORDERS_NS; }
    std::string GetNamespace() const override { return ORDERS_NS; }

protected:
    void ToXml_Int(CXmlWriter* w, bool, const char* ns, const CXmlSerializationContext&, bool) const override {
        w->WriteStartElement("line", ns);
        w->WriteAttributeString("sku", "", sku, ItemType_string);
        w->WriteAttributeString("quantity", "", quantity, ItemType_i4);
        w->WriteAttributeString("currency", META_NS, "EUR", ItemType_string);
        w->WriteStartElement("price", ns);
        w->WriteString(price, ItemType_decimal);
        w->WriteEndElement();
        w->WriteStartElement("description", ns);
        w->WriteString(description, ItemType_string);
        w->WriteEndElement();
        w->WriteEndElement();
    }
    CXmlElement* FromXml_Int(CXmlElement*, CXmlElement*, const CXmlSerializationContext&, bool) override {
        return nullptr;
    }
};

class COrder : public CXmlObjectBase {
public:
    std::string id, customer, email, note;
    std::vector<CSmartPtr<CLine>> lines;
    CXmlObjectBase* GetBase() override { return this; }
    std::string GetTargetNamespace() const override { return ORDERS_NS; }
    std::string GetNamespace() const override { return ORDERS_NS; }

protected:
    void ToXml_Int(CXmlWriter* w, bool, const char* ns, const CXmlSerializationContext& context, bool) const override {
        w->WriteStartElement("order", ns);
        w->WriteAttributeString("id", "", id, ItemType_string);
        w->WriteAttributeString("status", "", "open", ItemType_string);
        const char* fields[][2] = {{"customer", customer.c_str()}, {"email", email.c_str()}};
        for (const auto& field : fields) {
            w->WriteStartElement(field[0], ns);
            w->WriteString(field[1], ItemType_string);
            w->WriteEndElement();
        }
        for (const auto& line : lines)
            CXmlObjectBase::ToXml_Int(line.Get(), w, false, ns, context, false);
        w->WriteStartElement("note", ns);
        w->WriteString(note, ItemType_string);
        w->WriteEndElement();
        w->WriteEndElement();
    }
    CXmlElement* FromXml_Int(CXmlElement*, CXmlElement*, const CXmlSerializationContext&, bool) override {
        return nullptr;
    }
};

class COrderBook : public CXmlObjectBase {
public:
    std::vector<CSmartPtr<COrder>> orders;
    CXmlObjectBase* GetBase() override { return this; }
    std::string GetTargetNamespace() const override { return ORDERS_NS; }
    std::string GetNamespace() const override { return ORDERS_NS; }

protected:
    void ToXml_Int(CXmlWriter* w, bool, const char* ns, const CXmlSerializationContext& context, bool) const override {
        w->WriteStartElement("orders", ns);
        for (const auto& order : orders)
            CXmlObjectBase::ToXml_Int(order.Get(), w, false, ns, context, false);
        w->WriteEndElement();
    }
    CXmlElement* FromXml_Int(CXmlElement*, CXmlElement*, const CXmlSerializationContext&, bool) override {
        return nullptr;
    }
};

// An order book whose formatted text is about `bytes` long.
const COrderBook& Book(size_t bytes) {
    static COrderBook book;
    if (!book.orders.empty()) return book;
    size_t estimate = 0;
    for (size_t n = 0; estimate < bytes; ++n) {
        CSmartPtr<COrder> order(new COrder);
        order->id = "O-" + std::to_string(n);
        order->customer = "Customer number " + std::to_string(n) + " & Sons";
        order->email = "customer" + std::to_string(n) + "@example.com";
        order->note = "Deliver to the back door between 9 and 17 o'clock <urgent>.";
        for (int l = 0; l < 3; ++l) {
            CSmartPtr<CLine> line(new CLine);
            line->sku = "SKU-" + std::to_string(n * 3 + l);
            line->quantity = std::to_string(l + 1);
            line->price = "12.50";
            line->description = "Item description with a few words, line " + std::to_string(l);
            order->lines.push_back(line);
        }
        book.orders.push_back(order);
        estimate += 720;
    }
    return book;
}

const size_t SIZE = 10 << 20;

void BM_ToXml(benchmark::State& state) {
    const COrderBook& book = Book(SIZE);
    size_t bytes = 0;
    for (auto _ : state) {
        std::string text = book.ToXml(true, true, EOLType_LF);
        bytes = text.size();
        benchmark::DoNotOptimize(text.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes));
}

void BM_ToXmlStreamUtf8(benchmark::State& state) {
    const COrderBook& book = Book(SIZE);
    size_t bytes = 0;
    for (auto _ : state) {
        CBinaryData data = book.ToXmlStream(true, true, XmlEncoding_UTF8, EOLType_LF);
        bytes = data.GetLength();
        benchmark::DoNotOptimize(data.GetData());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes));
}

// The floor: the final text appended to a std::string in the pieces a writer produces
// (markup, names, attribute values and text runs, split at every '<', '>', '"', '=' and
// line end).
void BM_StringAppendFloor(benchmark::State& state) {
    static const std::string text = Book(SIZE).ToXml(true, true, EOLType_LF);
    static const std::vector<std::pair<size_t, size_t>> pieces = [] {
        std::vector<std::pair<size_t, size_t>> result;
        size_t start = 0;
        for (size_t i = 0; i < text.size(); ++i) {
            const char c = text[i];
            if (c == '<' || c == '>' || c == '"' || c == '=' || c == '\n') {
                if (i > start) result.emplace_back(start, i - start);
                result.emplace_back(i, 1);
                start = i + 1;
            }
        }
        if (start < text.size()) result.emplace_back(start, text.size() - start);
        return result;
    }();
    for (auto _ : state) {
        std::string out;
        for (const auto& piece : pieces)
            out.append(text, piece.first, piece.second);
        benchmark::DoNotOptimize(out.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}

BENCHMARK(BM_StringAppendFloor)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ToXml)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ToXmlStreamUtf8)->Unit(benchmark::kMillisecond);

const bool registered =
    (AddReport([] {
         auto& t = Timings();
         if (!t.count("BM_StringAppendFloor") || !t.count("BM_ToXml")) return;
         std::printf("Writing text (about %.1f MB) against appending it to a std::string:\n",
                     Book(SIZE).ToXml().size() / 1048576.0);
         std::printf("  ToXml costs %.2f x the floor (target at most 3)\n", t["BM_ToXml"] / t["BM_StringAppendFloor"]);
         if (t.count("BM_ToXmlStreamUtf8"))
             std::printf("  ToXmlStream (UTF-8) costs %.2f x the floor\n",
                         t["BM_ToXmlStreamUtf8"] / t["BM_StringAppendFloor"]);
     }),
     true);

} // namespace

// Example: purchase orders bound by classes in the form the code generator emits
// (orders/, written for orders/orders.xsd).
//
// The program reads the bundled sample order (or the file named by the first
// argument), prints what it read, writes it back as XML text, prints the sizes of the
// text and of the Fast Infoset forms, and then shows two
// failures with their whole chain of messages: a document with a quantity that is no
// number, and an order whose quantity breaks the schema's facet on output.
//
// Text: the program runs in the user's locale when that is UTF-8; otherwise it turns
// on ASCIIOnly(true), so that the library takes the local code page to be UTF-8 and
// the sample's non-ASCII text passes through unchanged either way.

#include <QvXml10/QvXml10.h>

#include "orders/Orders.h"

#include <clocale>
#include <cstdio>
#include <fstream>
#include <langinfo.h>
#include <sstream>
#include <string>
#include <strings.h>

using namespace QvXmlLib10;
using namespace PurchaseOrders;

namespace {

const char TRACKING_NAMESPACE[] = "urn:example:tracking";
const char INSTANCE_NAMESPACE[] = "http://www.w3.org/2001/XMLSchema-instance";

std::string ReadFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) throw CQvException(FormatString("Cannot open %s", path.c_str()));
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

// Cents as a decimal amount.
std::string Money(long long cents) {
    const long long whole = cents < 0 ? -cents : cents;
    char text[32];
    std::snprintf(text, sizeof text, "%s%lld.%02lld", cents < 0 ? "-" : "", whole / 100, whole % 100);
    return text;
}

void PrintSummary(const CPurchaseOrder& order) {
    const CBusinessDocument& document = *order.GetBusinessDocument();
    std::printf("Purchase order %s: status %s, priority %ld, %s, version %ld\n", order.GetId().c_str(),
                OrderStatusToText(order.GetStatus()), order.GetPriority(), order.GetExpress() ? "express" : "standard",
                document.GetVersion());
    std::printf("  issued by    %s%s%s\n", document.GetIssuedBy().c_str(),
                document.HasReference() ? ", reference " : "",
                document.HasReference() ? document.GetReference().c_str() : "");

    const CCustomer& customer = *order.GetCustomer();
    std::printf("  customer     %s, account %lld%s\n", customer.GetName().c_str(), customer.GetAccount(),
                customer.HasVip() && customer.GetVip() ? ", VIP" : "");

    const CPurchaseOrderChoice& delivery = *order.GetPurchaseOrderChoice();
    if (const CAddress* address = delivery.GetShipTo()) {
        std::printf("  ship to      %s, %s%s%s; %s\n", address->GetStreet().c_str(), address->GetCity().c_str(),
                    address->HasPostcode() ? " " : "", address->HasPostcode() ? address->GetPostcode().c_str() : "",
                    address->GetContact()->GetEmail().c_str());
    } else if (delivery.HasPickupPoint()) {
        std::printf("  pick up at   %s\n", delivery.GetPickupPoint().c_str());
    }

    long long total = 0;
    for (const CLine* line : *order.GetLines()) {
        const long long amount = line->GetQuantity() * line->GetUnitPriceCents();
        total += amount;
        std::printf("  line %-7ld %ld x %s %s at %s = %s", line->GetNumber(), line->GetQuantity(),
                    line->GetSku().c_str(), line->GetDescription().c_str(), Money(line->GetUnitPriceCents()).c_str(),
                    Money(amount).c_str());
        if (line->IsGiftNoteNil())
            std::printf(" (gift note: nil)");
        else if (line->HasGiftNote())
            std::printf(" (gift note: %s)", line->GetGiftNote().c_str());
        std::printf("\n");
    }
    std::printf("  total        %s\n", Money(total).c_str());
    std::printf("  comment      %s\n", order.IsCommentNil() ? "(nil)" : order.GetComment().c_str());

    const CPayment* payment = order.GetPayment();
    if (const auto* card = dynamic_cast<const CCardPayment*>(payment))
        std::printf("  payment      %s by card of %s, ending %s\n", Money(card->GetAmountCents()).c_str(),
                    card->GetCardHolder().c_str(), card->GetLast4().c_str());
    else if (const auto* invoice = dynamic_cast<const CInvoicePayment*>(payment))
        std::printf("  payment      %s by invoice, due in %ld days\n", Money(invoice->GetAmountCents()).c_str(),
                    invoice->GetDueDays());

    for (const CAttribute* attribute : *order.GetAnyAttributes())
        std::printf("  attribute    {%s}%s = %s\n", attribute->GetNamespace().c_str(), attribute->GetName().c_str(),
                    attribute->GetValue().c_str());
    for (const CElement* element : *order.GetAnyElements())
        std::printf("  element      {%s}%s: %s\n", element->GetNamespace().c_str(), element->GetName().c_str(),
                    element->GetText().c_str());
}

// The settings for writing: the sample's prefixes.
CXmlSerializationContext OutputContext() {
    CXmlSerializationContext context;
    context.GetNamespaceAliases().Add("po", TARGET_NAMESPACE);
    context.GetNamespaceAliases().Add("xsi", INSTANCE_NAMESPACE);
    context.GetNamespaceAliases().Add("trk", TRACKING_NAMESPACE);
    return context;
}

void ShowFailure(const char* title, const CQvException& failure) {
    std::printf("\n%s:\n%s\n", title, failure.GetFullMessage().c_str());
}

void Run(const std::string& path) {
    CPurchaseOrder order;
    order.FromXmlFile(path.c_str());
    std::printf("Read from %s:\n", path.substr(path.find_last_of('/') + 1).c_str());
    PrintSummary(order);

    std::printf("\nWritten back:\n%s\n", order.ToXml(true, true, EOLType_LF, OutputContext()).c_str());

    // The same order as Fast Infoset, with the default options and with the suggested
    // binary encodings and restricted alphabets, against the unformatted UTF-8 text.
    const CXmlSerializationContext context = OutputContext();
    CXmlSerializationContext suggested = OutputContext();
    suggested.GetFIContext().SetSuggestedValues();
    std::printf("Sizes: XML text %lu bytes, Fast Infoset %lu bytes, with suggested encodings %lu bytes\n",
                order.ToXmlStream(true, false, XmlEncoding_UTF8, EOLType_LF, context).GetLength(),
                order.ToFastInfosetStream(FInfoDecl_None, context).GetLength(),
                order.ToFastInfosetStream(FInfoDecl_None, suggested).GetLength());

    // A gzip Fast Infoset file, read back: the library recognises both layers on loading.
    const std::string zipped = std::string(P_tmpdir) + "/qvxml_example_order.fi.gz";
    order.ToFastInfosetFile(zipped.c_str(), FInfoDecl_None, context, CompressionType_GZip);
    CPurchaseOrder reread;
    reread.FromXmlFile(zipped.c_str());
    const bool same = reread.ToXml(true, true, EOLType_LF, context) == order.ToXml(true, true, EOLType_LF, context);
    std::printf("Gzip Fast Infoset file: %lu bytes, read back %s\n",
                order.ToFastInfosetStream(FInfoDecl_None, context, CompressionType_GZip).GetLength(),
                same ? "unchanged" : "CHANGED");
    std::remove(zipped.c_str());

    // A quantity that is no number, two levels down.
    std::string broken = ReadFile(path);
    const std::string quantity = "<po:quantity>4</po:quantity>";
    const size_t at = broken.find(quantity);
    if (at != std::string::npos) {
        broken.replace(at, quantity.size(), "<po:quantity>four</po:quantity>");
        try {
            CPurchaseOrder other;
            other.FromXml(broken.c_str());
        } catch (const CQvException& failure) {
            ShowFailure("Reading a line whose quantity is \"four\" fails", failure);
        }
    }

    // Facets are checked on output: a quantity of 0 is read, but not written.
    if (order.GetLines()->GetCount() > 0) {
        order.GetLines()->Item(0)->SetQuantity(0);
        try {
            order.ToXml(true, true, EOLType_LF, OutputContext());
        } catch (const CQvException& failure) {
            ShowFailure("Writing a line whose quantity is 0 fails", failure);
        }
    }
}

} // namespace

int main(int argc, char** argv) {
    // The user's locale if it is UTF-8; otherwise text passes as UTF-8 bytes.
    std::setlocale(LC_ALL, "");
    const char* codeset = nl_langinfo(CODESET);
    if (codeset == nullptr || (strcasecmp(codeset, "UTF-8") != 0 && strcasecmp(codeset, "utf8") != 0)) ASCIIOnly(true);

    const std::string path = argc > 1 ? argv[1] : std::string(QVXML_EXAMPLE_DIR) + "/orders/order.xml";
    int result = 0;
    try {
        Run(path);
    } catch (const CQvException& failure) {
        std::fprintf(stderr, "error: %s\n", failure.GetFullMessage().c_str());
        result = 1;
    }
    // The generated classes' tables live until this call.
    CleanOrdersMetaData();
    return result;
}

// A program outside the project that uses the installed library through its umbrella
// header: the purchase-order classes of the example read the sample order and write it
// back, and an exception chain is printed.
//
// Text: ASCIIOnly(true), so that the sample's UTF-8 passes through in any locale.
#include <QvXml10/QvXml10.h>

#include "orders/Orders.h"

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>

int main(int argc, char** argv) {
    using namespace QvXmlLib10;
    if (argc != 2) {
        std::fprintf(stderr, "usage: consumer order.xml\n");
        return 2;
    }
    ASCIIOnly(true);
    int status = 0;
    try {
        std::ifstream file(argv[1], std::ios::binary);
        std::ostringstream sample;
        sample << file.rdbuf();

        // Read, written, read and written again gives the same text.
        PurchaseOrders::CPurchaseOrder first;
        first.FromXml(sample.str().c_str());
        const std::string written = first.ToXml(true, true, EOLType_LF);
        PurchaseOrders::CPurchaseOrder second;
        second.FromXml(written.c_str());
        const std::string again = second.ToXml(true, true, EOLType_LF);
        if (again != written) {
            std::fprintf(stderr, "round trip differs:\n%s\n---\n%s\n", written.c_str(), again.c_str());
            status = 1;
        }
        std::printf("%s", written.c_str());
    } catch (const CQvException& e) {
        std::fprintf(stderr, "failed: %s\n", e.GetFullMessage().c_str());
        status = 1;
    }
    try {
        throw CQvValidationException("Outer", CQvException("Inner"));
    } catch (const CQvException& e) {
        std::printf("consumer: %s\n", e.GetFullMessage().c_str());
    }
    PurchaseOrders::CleanOrdersMetaData();
    return status;
}

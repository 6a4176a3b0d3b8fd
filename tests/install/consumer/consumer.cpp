// A program outside the project that uses the installed library through its umbrella header.
#include <QvXml10/QvXml10.h>

#include <cstdio>

int main() {
    using namespace QvXmlLib10;
    try {
        throw CQvValidationException("Outer", CQvException("Inner"));
    } catch (const CQvException& e) {
        std::printf("consumer: %s\n", e.GetFullMessage().c_str());
    }
    return 0;
}

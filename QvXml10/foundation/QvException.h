#pragma once

#include "QvExport.h"

#include <cstdarg>
#include <string>

namespace QvXmlLib10 {

// Root of the library's exception family. An exception carries its own text and,
// optionally, a private copy of the exception that caused it. Thrown by value.
class QVXML_API CQvException {
public:
    CQvException();
    CQvException(const std::string& message);
    CQvException(const std::string& message, const CQvException& inner);
    CQvException(const CQvException& other);
    virtual ~CQvException();
    virtual CQvException* Clone() const;

    std::string GetMessage() const;
    // Still owned by this exception; null when there is none.
    CQvException* GetInnerException() const;
    // This message, then each inner message on a line of its own, outermost first.
    std::string GetFullMessage() const;

    // Takes the other's message and a clone of its inner exception. The chain this
    // exception held before is not destroyed (long-standing behaviour kept for compatibility).
    CQvException& operator=(const CQvException& other);

protected:
    std::string m_message;
    CQvException* m_innerException;
};

#define QVXML_DECLARE_EXCEPTION(Name, Base)                                                                            \
    class QVXML_API Name : public Base {                                                                               \
    public:                                                                                                            \
        Name();                                                                                                        \
        Name(const std::string& message);                                                                              \
        Name(const std::string& message, const CQvException& inner);                                                   \
        Name(const CQvException& other);                                                                               \
        Name(const Name& other);                                                                                       \
        Name& operator=(const Name&) = default;                                                                        \
        ~Name() override;                                                                                              \
        CQvException* Clone() const override;                                                                          \
    };

QVXML_DECLARE_EXCEPTION(CQvValidationException, CQvException)
QVXML_DECLARE_EXCEPTION(CQvInvalidValueException, CQvValidationException)
QVXML_DECLARE_EXCEPTION(CQvInvalidNamespaceException, CQvValidationException)
QVXML_DECLARE_EXCEPTION(CQvInvalidParamException, CQvException)
QVXML_DECLARE_EXCEPTION(CQvInvalidStateException, CQvException)
QVXML_DECLARE_EXCEPTION(CQvOverFlowException, CQvException)

#undef QVXML_DECLARE_EXCEPTION

// printf-like formatting that measures the output before it formats (see FormatV).
QVXML_API std::string FormatV(const char* format, va_list args);
QVXML_API std::string FormatString(const char* format, ...)
#if defined(__GNUC__)
    __attribute__((format(printf, 1, 2)))
#endif
    ;

} // namespace QvXmlLib10

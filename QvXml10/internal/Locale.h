#pragma once

// The local code page as the C library sees it.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cwchar>
#include <langinfo.h>

namespace QvXmlLib10 {
namespace Internal {

// Whether the current locale's multibyte text is UTF-8. A single-byte locale is never
// UTF-8, whatever its name: mbrtowc and wcrtomb would not produce UTF-8 sequences there.
// The codeset name is compared without case and dashes ("UTF-8", "utf8", "UTF8").
inline bool IsUtf8Locale() {
    if (MB_CUR_MAX == 1) return false;
    const char* codeset = nl_langinfo(CODESET);
    if (codeset == nullptr) return false;
    const char* const wanted = "utf8";
    const char* w = wanted;
    for (const char* c = codeset; *c != '\0'; ++c) {
        if (*c == '-') continue;
        const char lower = (*c >= 'A' && *c <= 'Z') ? static_cast<char>(*c - 'A' + 'a') : *c;
        if (*w == '\0' || lower != *w) return false;
        ++w;
    }
    return *w == '\0';
}

// Writes wide characters in the local code page at a place that holds MB_CUR_MAX bytes
// for each character. ASCII in the initial shift state stands for itself; a character
// the code page can't show becomes "?" and restarts the shift state.
class CLocalCharWriter {
public:
    explicit CLocalCharWriter(char* out) : m_pos(out), m_state(), m_initial(true) {}

    void Put(wchar_t wc) {
        if (static_cast<uint32_t>(wc) < 0x80 && m_initial) {
            *m_pos++ = static_cast<char>(wc);
            return;
        }
        const size_t written = std::wcrtomb(m_pos, wc, &m_state);
        if (written == static_cast<size_t>(-1)) {
            *m_pos++ = '?';
            m_state = std::mbstate_t{};
            m_initial = true;
            return;
        }
        m_pos += written;
        m_initial = std::mbsinit(&m_state) != 0;
    }

    char* Position() const { return m_pos; }

private:
    char* m_pos;
    std::mbstate_t m_state;
    bool m_initial;
};

} // namespace Internal
} // namespace QvXmlLib10

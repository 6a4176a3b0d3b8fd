#include "validation/RegEx.h"

#include <cstdlib>
#include <cstring>
#include <atomic>
#include <memory>
#include <vector>

#include <pcre.h>

#include "foundation/BinaryData.h"
#include "foundation/Encoder.h"
#include "foundation/QvException.h"
#include "foundation/Utilities.h"
#include "internal/Text.h"

using QvXmlLib10::Internal::OrEmpty;

namespace QvXmlLib10 {

namespace {

struct PcreDeleter {
    void operator()(pcre* compiled) const { std::free(compiled); }
};

struct StudyDeleter {
    void operator()(pcre_extra* extra) const { pcre_free_study(extra); }
};

struct JitStackDeleter {
    void operator()(pcre_jit_stack* stack) const { pcre_jit_stack_free(stack); }
};

// The interpreter of pcre_exec recurses on the machine stack, a frame for each
// nesting of backtracking points, and would overflow it on a long value matched by a
// repeated group. It is held to this much stack (a small thread stack has room for
// it); a match that needs more runs again as machine code on a stack of its own.
constexpr long kInterpreterStackBudget = 512 * 1024;
constexpr int kJitStackStart = 32 * 1024;
constexpr int kJitStackMax = 16 * 1024 * 1024;

unsigned long InterpreterRecursionLimit() {
    // pcre_exec answers these arguments with the negated size of one frame.
    const int frameSize = -pcre_exec(nullptr, nullptr, nullptr, -999, -999, 0, nullptr, 0);
    return static_cast<unsigned long>(kInterpreterStackBudget / (frameSize > 0 ? frameSize : 1024));
}

// Runs the match as machine code with its own stack; an error when PCRE has no JIT.
// JIT code takes no anchoring at match time, so the pattern is compiled again with
// the anchoring built in, which matches alike.
int ExecuteCompiled(const std::string& pattern, const char* subject, int length, int* offsets, int offsetCount) {
    const char* error = nullptr;
    int errorOffset = 0;
    const std::unique_ptr<pcre, PcreDeleter> compiled(
        pcre_compile(pattern.c_str(), PCRE_UTF8 | PCRE_ANCHORED, &error, &errorOffset, nullptr));
    if (!compiled) return PCRE_ERROR_RECURSIONLIMIT;
    const std::unique_ptr<pcre_extra, StudyDeleter> study(pcre_study(compiled.get(), PCRE_STUDY_JIT_COMPILE, &error));
    int isJit = 0;
    if (!study || pcre_fullinfo(compiled.get(), study.get(), PCRE_INFO_JIT, &isJit) != 0 || !isJit)
        return PCRE_ERROR_RECURSIONLIMIT;
    const std::unique_ptr<pcre_jit_stack, JitStackDeleter> stack(pcre_jit_stack_alloc(kJitStackStart, kJitStackMax));
    if (!stack) return PCRE_ERROR_NOMEMORY;
    pcre_assign_jit_stack(study.get(), nullptr, stack.get());
    return pcre_exec(compiled.get(), study.get(), subject, length, 0, 0, offsets, offsetCount);
}

// XSD escapes in PCRE's terms. An escaped backslash is parked on the byte 0x01 while
// the other escapes are rewritten, so that "\\i" stays a backslash and an "i".
// The last block keeps its historical upper bound \1117.
void TranslatePattern(std::string& pattern) {
    FindReplace(pattern, "\\\\", "\x01");
    FindReplace(pattern, "\\i", "([^\\W\\d]|:)");
    FindReplace(pattern, "\\I", "([\\W\\d])");
    FindReplace(pattern, "\\c", "(\\w|\\.|-|:)");
    FindReplace(pattern, "\\C", "([^\\w\\.\\-\\:])");
    FindReplace(pattern, "\\p{IsBasicLatin}", "[\\000-\\177]");
    FindReplace(pattern, "\\p{IsLatin-1Supplement}", "[\\200-\\377]");
    FindReplace(pattern, "\\p{IsLatinExtended-A}", "[\\400-\\577]");
    FindReplace(pattern, "\\p{IsLatinExtended-B}", "[\\600-\\1117]");
    FindReplace(pattern, "\x01", "\\\\");
    pattern.insert(pattern.begin(), '^');
    pattern.push_back('$');
}

// One pattern, translated and compiled, ready to match any number of values.
class CompiledPattern {
public:
    // Throws the "Invalid Regular Expression" failure, made with `value`, when PCRE
    // refuses the pattern.
    CompiledPattern(const std::string& utf8Pattern, const std::string& value) : m_source(utf8Pattern) {
        m_translated = utf8Pattern;
        TranslatePattern(m_translated);
        const char* error = nullptr;
        int errorOffset = 0;
        m_compiled.reset(pcre_compile(m_translated.c_str(), PCRE_UTF8, &error, &errorOffset, nullptr));
        if (!m_compiled)
            throw CQvException(
                FormatString("Invalid Regular Expression: %s Error: '%s'", value.c_str(), OrEmpty(error)));
        pcre_fullinfo(m_compiled.get(), nullptr, PCRE_INFO_CAPTURECOUNT, &m_captureCount);
    }

    const std::string& Source() const { return m_source; }

    bool Matches(const std::string& value) const {
        std::vector<int> offsets(3 * (static_cast<std::size_t>(m_captureCount) + 1));

        // The subject is the value in UTF-8, up to its first NUL.
        const CBinaryData utf8 = CEncoder::LocalCodePageToUtf8Binary(value.c_str());
        const std::string subject = utf8.GetData() != nullptr
                                        ? std::string(reinterpret_cast<const char*>(utf8.GetData()), utf8.GetLength())
                                        : std::string();
        const int length = static_cast<int>(std::strlen(subject.c_str()));

        pcre_extra limits{};
        limits.flags = PCRE_EXTRA_MATCH_LIMIT_RECURSION;
        limits.match_limit_recursion = InterpreterRecursionLimit();
        const int offsetCount = static_cast<int>(offsets.size());
        int result = pcre_exec(m_compiled.get(), &limits, subject.c_str(), length, 0, PCRE_ANCHORED, offsets.data(),
                               offsetCount);
        if (result == PCRE_ERROR_RECURSIONLIMIT)
            result = ExecuteCompiled(m_translated, subject.c_str(), length, offsets.data(), offsetCount);
        // "$" also matches before a final newline: the match must reach the very end.
        return result > 0 && offsets[0] == 0 && offsets[1] == length;
    }

private:
    std::string m_source;
    std::string m_translated;
    std::unique_ptr<pcre, PcreDeleter> m_compiled;
    int m_captureCount = 0;
};

} // namespace

bool TestRegEx(std::string pattern, std::string value) { return CompiledPattern(pattern, value).Matches(value); }

namespace Internal {

// A compiled pattern kept with the facets it belongs to. Compiled patterns are never
// changed once made, so any number of threads may match with one; the slot itself is
// read and replaced atomically.
class CPatternCache {
public:
    explicit CPatternCache(std::shared_ptr<const CompiledPattern> pattern) : m_pattern(std::move(pattern)) {}
    std::shared_ptr<const CompiledPattern> m_pattern;
};

bool TestRegExReusing(const std::string& utf8Pattern, const std::string& value,
                      std::shared_ptr<const CPatternCache>& slot) {
    const std::shared_ptr<const CPatternCache> cached = std::atomic_load(&slot);
    if (cached && cached->m_pattern->Source() == utf8Pattern) return cached->m_pattern->Matches(value);
    auto compiled = std::make_shared<const CompiledPattern>(utf8Pattern, value);
    std::atomic_store(&slot, std::shared_ptr<const CPatternCache>(std::make_shared<const CPatternCache>(compiled)));
    return compiled->Matches(value);
}

} // namespace Internal

} // namespace QvXmlLib10


#if __has_include(<cxxabi.h>)
#include <lmx/Runtime/Private/lmxClassName.h>

#include <cxxabi.h>
#endif

#include <cstdlib>
#include <memory>

namespace lmx {

QString ClassNameOf(const std::type_info& type) {
#if __has_include(<cxxabi.h>)
    int status = 0;
    const std::unique_ptr<char, void (*)(void*)> demangled(abi::__cxa_demangle(type.name(), nullptr, nullptr, &status),
                                                           &std::free);
    const QString name = QString::fromLatin1(status == 0 ? demangled.get() : type.name());
#else
    const QString name = QString::fromLatin1(type.name()); // "class lmx::TIdrisiMapLayer"
#endif
    qsizetype start = 0;
    qsizetype depth = 0; // inside template arguments or "(anonymous namespace)" a separator does not count
    for (qsizetype i = 0; i < name.size(); ++i) {
        const QChar c = name[i];
        if (c == u'<' || c == u'(')
            ++depth;
        else if (c == u'>' || c == u')')
            --depth;
        else if (depth == 0 && (c == u':' || c == u' '))
            start = i + 1;
    }
    return name.sliced(start);
}

} // namespace lmx

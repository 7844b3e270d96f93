#pragma once

#include <clocale>
#include <locale>
#include <string>

namespace velmorindal {

/// A decimal comma and a dot between thousands, as half of Europe writes numbers.
class CommaNumbers : public std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

/// Calls `check` in several locales of the C library, with its name, while the standard library writes a
/// decimal comma. The C library has only those that are installed.
template <typename Check>
void inOtherLocales(Check check) {
    const std::locale standardBefore =
        std::locale::global(std::locale{std::locale::classic(), new CommaNumbers});
    const std::string libraryBefore = std::setlocale(LC_ALL, nullptr);
    for (const char* locale : {"C", "de_DE.UTF-8", "fr_FR.UTF-8", ""}) {
        std::setlocale(LC_ALL, locale);
        check(locale);
    }
    // In this order, since the standard library's locale sets that of the C library too.
    std::locale::global(standardBefore);
    std::setlocale(LC_ALL, libraryBefore.c_str());
}

}  // namespace velmorindal

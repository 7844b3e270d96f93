#pragma once

#include <QLocale>

#include "OtherLocales.h"

namespace velmorindal {

/// inOtherLocales(), while the toolkit too writes a decimal comma.
template <typename Check>
void inOtherToolkitLocales(Check check) {
    const QLocale toolkitBefore;
    QLocale::setDefault(QLocale::German);
    inOtherLocales(check);
    QLocale::setDefault(toolkitBefore);
}

}  // namespace velmorindal

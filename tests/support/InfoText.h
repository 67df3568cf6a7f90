#ifndef SUPPORT_INFOTEXT_H
#define SUPPORT_INFOTEXT_H

#include <string>

#include <utility/InfoContainer.h>

/// Diagnostic rows as text, one a line: "depth/detail key" or "depth/detail key = value". A value
/// that is empty shows as no value: headings and empty ones are alike.
inline std::string textOf(InfoContainer const& info)
{
    std::string all;
    for (InfoContainer::Row const& row : info.rows()) {
        all += std::to_string(row.depth) + "/" + std::to_string(row.detail) + " ";
        all += row.key.cString();
        if (!row.value.isEmpty())
            all += std::string(" = ") + row.value.cString();
        all += "\n";
    }
    return all;
}

#endif

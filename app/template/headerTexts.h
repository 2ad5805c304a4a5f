#pragma once

#include <QString>

#include <string_view>

namespace sheetTemplate {

/// What a template says of a header of the origin "Excel", and what its example has under it.
struct HeaderText {
    const char* header;
    const char* caption;
    const char* meaning = "";      ///< what the caption leaves open; empty where it says all
    std::string_view example = {}; ///< empty for none
};

/// Example of a column of codes: the first one that the company has; none where it has none.
inline constexpr std::string_view AnyCode = "*";

/// The text of a header; null when it has none.
const HeaderText* TextOf(const QString& header);

} // namespace sheetTemplate

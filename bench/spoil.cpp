#include "bench/spoil.h"

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace {

constexpr std::size_t FieldSize = 32;

std::size_t Number(const std::string& bytes, std::size_t at, std::size_t count) {
    std::size_t number = 0;
    for (std::size_t each = count; each-- > 0;) {
        number = number * 256 + static_cast<unsigned char>(bytes.at(at + each));
    }
    return number;
}

/// Where a column begins in a row.
std::size_t OffsetOf(const std::string& table, const std::string& column) {
    std::size_t offset = 1;
    for (std::size_t field = FieldSize; table.at(field) != '\r'; field += FieldSize) {
        if (table.c_str() + field == column) {
            return offset;
        }
        offset += Number(table, field + 16, 1);
    }
    throw std::runtime_error("no column " + column);
}

} // namespace

void SpoilRows(const std::string& table, const std::string& column, int oneIn) {
    std::ifstream in(table, std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(in), {}};
    const std::size_t offset = OffsetOf(bytes, column);
    const std::size_t rowSize = Number(bytes, 10, 2);
    for (std::size_t row = Number(bytes, 8, 2); row + rowSize <= bytes.size();
         row += rowSize * static_cast<std::size_t>(oneIn)) {
        bytes.replace(row + offset, 3, "abc");
    }
    std::ofstream(table, std::ios::binary) << bytes;
}

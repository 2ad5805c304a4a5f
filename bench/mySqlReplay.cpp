#include "bench/mySqlReplay.h"

#include "sql/engines/mysql/mySqlSession.h"

#include <mysql.h>

#include <fstream>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <vector>

namespace {

using Handle = std::unique_ptr<MYSQL, decltype(&mysql_close)>;

void Send(MYSQL* handle, std::string_view statement) {
    if (mysql_real_query(handle, statement.data(), static_cast<unsigned long>(statement.size())) != 0) {
        throw std::runtime_error(std::string(mysql_error(handle)) + ": " + std::string(statement.substr(0, 200)));
    }
    if (MYSQL_RES* rows = mysql_use_result(handle)) {
        while (mysql_fetch_row(rows) != nullptr) {
        }
        mysql_free_result(rows);
    }
}

Handle Open(const std::string& server, const std::string& database) {
    std::vector<std::string> parts;
    std::istringstream text(server);
    for (std::string part; std::getline(text, part, '|');) {
        parts.push_back(part);
    }
    Handle handle(mysql_init(nullptr), &mysql_close);
    mysql_options(handle.get(), MYSQL_SET_CHARSET_NAME, "utf8mb4");
    if (parts.size() < 4 ||
        mysql_real_connect(handle.get(), parts[0].c_str(), parts[2].c_str(), parts[3].c_str(), database.c_str(),
                           static_cast<unsigned>(std::stoul(parts[1])), nullptr, CLIENT_FOUND_ROWS) == nullptr) {
        throw std::runtime_error("cannot open " + database);
    }
    Send(handle.get(), MySqlSession);
    return handle;
}

/// End of a line of comment or of a literal that begins here; the next place otherwise.
size_t EndOfToken(std::string_view text, size_t at) {
    const bool isComment = text.substr(at, 3) == "-- ";
    const bool isQuoted = text[at] == '\'' || text[at] == '"' || text[at] == '`';
    const size_t end = isComment || isQuoted ? text.find(isComment ? '\n' : text[at], at + 1) : at;
    return end == std::string_view::npos ? text.size() : end + 1;
}

} // namespace

long ReplayMySql(const std::string& server, const std::string& database, const std::string& trace) {
    const Handle handle = Open(server, database);
    std::ostringstream content;
    content << std::ifstream(trace, std::ios::binary).rdbuf();
    const std::string all = std::move(content).str();
    const std::string_view text = all;
    long count = 0;
    size_t start = 0;
    for (size_t at = 0; at < text.size();) {
        if (text.substr(at, 3) == "-- " && text.substr(start, at - start).find_first_not_of(" \r\n") == text.npos) {
            start = at = EndOfToken(text, at); // a line of comment between the statements
        } else if (text[at] == ';') {
            Send(handle.get(), text.substr(start, at - start));
            ++count;
            start = ++at;
        } else {
            at = EndOfToken(text, at);
        }
    }
    return count;
}

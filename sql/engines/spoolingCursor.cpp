#include "sql/engines/spoolingCursor.h"

#include <QDataStream>

namespace {
constexpr qsizetype RowsInMemory = 1000;
} // namespace

void ResultLine::Free() {
    if (cursor != nullptr) {
        cursor->PutAside();
    }
}

SpoolingCursor::SpoolingCursor(std::unique_ptr<Cursor> live, std::shared_ptr<ResultLine> line,
                               std::function<QString()> statement)
    : m_live(std::move(live)),
      m_line(std::move(line)),
      m_statement(std::move(statement)) {
    m_line->cursor = this;
}

SpoolingCursor::~SpoolingCursor() { LeaveLine(); }

void SpoolingCursor::LeaveLine() {
    if (m_live != nullptr) {
        m_columns = m_live->Columns();
        m_live.reset();
    }
    if (m_line->cursor == this) {
        m_line->cursor = nullptr;
    }
}

bool SpoolingCursor::Next() {
    if (m_live == nullptr) {
        return NextAside();
    }
    m_hasRow = m_live->Next();
    if (m_hasRow) {
        return true;
    }
    LeaveLine();
    m_row.clear();
    return false;
}

QVariant SpoolingCursor::Value(int column) const {
    if (m_live == nullptr && m_row.isEmpty() && m_failure != nullptr) {
        std::rethrow_exception(m_failure); // the row could not be put aside
    }
    return m_live != nullptr ? m_live->Value(column) : m_row.value(column);
}

SpoolingCursor::Row SpoolingCursor::LiveRow() const {
    Row row;
    const auto count = static_cast<int>(m_live->Columns().size());
    row.reserve(count);
    for (int column = 0; column < count; ++column) {
        row.append(m_live->Value(column));
    }
    return row;
}

void SpoolingCursor::PutAside() noexcept {
    try {
        ReadRest();
    } catch (...) {
        m_failure = std::current_exception();
    }
    BackToFirst();
    LeaveLine();
}

/// The rows read until a failure wait in the file too, and what failed is told behind them.
void SpoolingCursor::BackToFirst() noexcept {
    if (m_file == nullptr || m_file->seek(0)) {
        return;
    }
    m_rowsInFile = 0;
    if (m_failure == nullptr) {
        m_failure = std::make_exception_ptr(FileError());
    }
}

void SpoolingCursor::ReadRest() {
    if (m_hasRow) {
        m_row = LiveRow();
    }
    while (m_live->Next()) {
        Append(LiveRow());
    }
}

SqlError SpoolingCursor::FileError() const {
    return {
        m_statement(),
        QStringLiteral("file temporaneo '%1': %2 (il disco è pieno?)").arg(m_file->fileName(), m_file->errorString())};
}

void SpoolingCursor::Append(const Row& row) {
    if (m_first.size() < RowsInMemory) {
        m_first.append(row);
        return;
    }
    if (m_file == nullptr) {
        m_file = std::make_unique<QTemporaryFile>();
        if (!m_file->open()) {
            throw FileError();
        }
    }
    QDataStream stream(m_file.get());
    stream << row;
    if (stream.status() != QDataStream::Ok) {
        throw FileError();
    }
    ++m_rowsInFile;
}

bool SpoolingCursor::NextAside() {
    m_row.clear();
    if (m_nextOfFirst < m_first.size()) {
        m_row = std::move(m_first[m_nextOfFirst++]);
        return true;
    }
    m_first.clear();
    m_nextOfFirst = 0;
    if (m_rowsInFile > 0) {
        --m_rowsInFile;
        QDataStream stream(m_file.get());
        stream >> m_row;
        if (stream.status() != QDataStream::Ok) {
            throw FileError();
        }
        return true;
    }
    if (m_failure != nullptr) {
        std::rethrow_exception(m_failure);
    }
    return false;
}

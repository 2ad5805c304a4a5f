#include "sources/Dbf.h"

#include "sources/findFile.h"
#include "sql/errors.h"

#include <QFileInfo>
#include <QSet>
#include <QtEndian>

#include <algorithm>
#include <optional>

namespace sources {

namespace {

constexpr int PrologueLength = 32;
constexpr int DescriptorLength = 32;
constexpr char HeaderEnd = 0x0d;
constexpr qint64 BufferBytes = qint64(1) << 20;

bool IsVisualFoxPro(int version) { return version >= 0x30 && version <= 0x32; }

bool IsKnownVersion(int version) {
    static const QSet<int> known{0x03, 0x30, 0x31, 0x32, 0x43, 0x63, 0x7b, 0x83, 0x84, 0x8b, 0x8e, 0xcb, 0xf5, 0xfb};
    return known.contains(version);
}

/// Whether the format gives this type this length; a type that is not read may have any.
bool IsPossible(const DbfField& field) {
    switch (field.type) {
    case 'L':
        return field.length == 1;
    case 'D':
    case 'T':
    case 'Y':
        return field.length == 8;
    case 'I':
        return field.length == 4;
    case 'M':
        return field.length == 4 || field.length == 10;
    case 'N':
    case 'F':
        return field.length <= 32;
    default:
        return field.length > 0;
    }
}

/// dBase and Clipper put the high byte of a long text's length where numbers have their decimals.
int LongTextLength(const DbfField& field) {
    return field.type == 'C' ? field.length + 256 * field.decimals : field.length;
}

DbfField ReadDescriptor(const uchar* bytes, const CodePage& page, bool isVisual) {
    DbfField field;
    const char* name = reinterpret_cast<const char*>(bytes);
    field.name = DecodeText(QByteArrayView(name, static_cast<qsizetype>(qstrnlen(name, 11))), page).trimmed();
    field.type = static_cast<char>(bytes[11]);
    field.length = bytes[16];
    field.decimals = bytes[17];
    const int flags = isVisual ? bytes[18] : 0;
    field.isHidden = (flags & 1) != 0;
    field.nullBit = (flags & 2) != 0 ? 0 : -1;
    return field;
}

} // namespace

DbfFile::DbfFile(const QString& path, const QString& codePage)
    : m_path(path),
      m_fileName(QFileInfo(path).fileName()),
      m_file(path) {
    try {
        if (!m_file.open(QIODevice::ReadOnly)) {
            throw ImportError(QStringLiteral("il file non si può aprire (%1)").arg(m_file.errorString()));
        }
        ReadHeader(codePage);
    } catch (ImportError& error) {
        error.AddContext(QStringLiteral("File '%1'").arg(m_fileName));
        throw;
    }
}

MemoFormat DbfFile::Memos() const {
    static const QSet<int> dBase4{0x7b, 0x84, 0x8b, 0x8e, 0xcb};
    if (m_version == 0x83 || m_version == 0x03) {
        return MemoFormat::DBase3;
    }
    return dBase4.contains(m_version) ? MemoFormat::DBase4 : MemoFormat::FoxPro;
}

void DbfFile::ReadHeader(const QString& codePage) {
    const QByteArray prologue = m_file.read(PrologueLength);
    const auto* bytes = reinterpret_cast<const uchar*>(prologue.constData());
    if (m_file.error() != QFileDevice::NoError) {
        throw ImportError(QStringLiteral("il file non si legge (%1)").arg(m_file.errorString()));
    }
    if (prologue.size() < PrologueLength || !IsKnownVersion(bytes[0])) {
        throw ImportError(QStringLiteral("non è una tabella dBase III/IV o FoxPro; controllare che la cartella sia "
                                         "quella dei dati, o esportare la tabella in formato dBase IV"));
    }
    m_version = bytes[0];
    m_recordCount = qFromLittleEndian<quint32>(bytes + 4);
    m_headerLength = qFromLittleEndian<quint16>(bytes + 8);
    m_recordLength = qFromLittleEndian<quint16>(bytes + 10);
    FindPage(codePage, bytes[29]);
    if (m_headerLength <= PrologueLength || m_recordLength < 2) {
        throw ImportError(QStringLiteral("l'intestazione ha lunghezze impossibili (intestazione %1, riga %2 byte); il "
                                         "file è danneggiato: ripristinarlo da una copia")
                              .arg(m_headerLength)
                              .arg(m_recordLength));
    }
    ReadFields(m_file.read(m_headerLength - PrologueLength));
    CheckSize();
    if (!m_file.seek(m_headerLength)) {
        throw ImportError(QStringLiteral("il file non si legge (%1)").arg(m_file.errorString()));
    }
}

namespace {

/// The page that a file ".cpg" beside a table names: "UTF-8", "CP850", "ANSI 1252"; empty without one.
QString PageBeside(const QString& path) {
    constexpr qint64 longest = 64;
    const QFileInfo table(path);
    QFile file(FindFile(table.path() + u'/' + table.completeBaseName() + QStringLiteral(".cpg")));
    if (file.fileName().isEmpty() || !file.open(QIODevice::ReadOnly)) {
        return {};
    }
    QString name = QString::fromLatin1(file.read(longest)).simplified();
    for (const char* word : {"ANSI ", "OEM "}) {
        name = name.startsWith(QLatin1String(word), Qt::CaseInsensitive) ? name.mid(static_cast<int>(qstrlen(word)))
                                                                         : name;
    }
    return name;
}

} // namespace

void DbfFile::FindPage(const QString& codePage, unsigned char language) {
    const bool isForced = codePage.endsWith(u'!');
    const QString beside = isForced ? QString() : PageBeside(m_path);
    const auto told = isForced           ? std::optional(codePage.chopped(1))
                      : beside.isEmpty() ? CodePageOfLanguage(language)
                                         : std::optional(beside);
    m_tellsPage = told.has_value();
    m_page = CodePage(told.value_or(codePage));
}

void DbfFile::ReadFields(const QByteArray& header) {
    const auto* bytes = reinterpret_cast<const uchar*>(header.constData());
    qsizetype at = 0;
    while (at + DescriptorLength <= header.size() && header[at] != HeaderEnd) {
        m_fields.append(ReadDescriptor(bytes + at, m_page, IsVisualFoxPro(m_version)));
        at += DescriptorLength;
    }
    // Some programs write no mark behind the last column; the columns fill a record all the same, or it is refused.
    const bool isMarked = at < header.size() && header[at] == HeaderEnd;
    if (!isMarked && header.size() - at >= DescriptorLength) {
        throw ImportError(QStringLiteral("l'intestazione finisce prima della fine dell'elenco delle colonne; il file è "
                                         "danneggiato: ripristinarlo da una copia"));
    }
    if (IsVisualFoxPro(m_version)) {
        const QByteArray link = isMarked ? header.mid(at + 1) : QByteArray();
        m_container = DecodeText(link.left(link.indexOf('\0')), m_page).trimmed();
    }
    const auto sum = [this](auto&& length) {
        qint64 bytesOfFields = 1;
        for (const DbfField& field : std::as_const(m_fields)) {
            bytesOfFields += length(field);
        }
        return bytesOfFields;
    };
    const bool hasLongTexts = sum(LongTextLength) == m_recordLength;
    int offset = 1;
    for (DbfField& field : m_fields) {
        field.length = hasLongTexts ? LongTextLength(field) : field.length;
        field.offset = offset;
        offset += field.length;
    }
    CheckFields();
    NumberFlags();
}

/// The null flags hold, in the order of the columns, a bit for each text of its own length and one for each column
/// that may be Null.
void DbfFile::NumberFlags() {
    int bit = 0;
    for (int index = 0; index < m_fields.size(); ++index) {
        DbfField& field = m_fields[index];
        if (field.type == '0') {
            m_flagsField = index;
            continue;
        }
        const bool hasOwnLength = field.type == 'V' || field.type == 'Q';
        field.lengthBit = hasOwnLength ? bit++ : -1;
        field.nullBit = field.nullBit >= 0 ? bit++ : -1;
    }
}

void DbfFile::CheckFields() const {
    qint64 length = 1;
    for (const DbfField& field : m_fields) {
        length += field.length;
        if (field.name.isEmpty()) {
            throw ImportError(QStringLiteral("l'intestazione ha una colonna senza nome; il file è danneggiato: "
                                             "ripristinarlo da una copia"));
        }
        if (!IsPossible(field)) {
            throw ImportError(
                QStringLiteral("la colonna '%1' di tipo '%2' ha una lunghezza impossibile (%3); il file è "
                               "danneggiato: ripristinarlo da una copia")
                    .arg(field.name, QChar::fromLatin1(field.type), QString::number(field.length)));
        }
    }
    if (m_fields.isEmpty() || length != m_recordLength) {
        throw ImportError(
            QStringLiteral("le colonne occupano %1 byte ma l'intestazione annuncia righe di %2; il file è "
                           "danneggiato: ripristinarlo da una copia")
                .arg(length)
                .arg(m_recordLength));
    }
}

void DbfFile::CheckSize() {
    const qint64 whole = std::max<qint64>(0, (m_file.size() - m_headerLength) / m_recordLength);
    if (whole < m_recordCount) {
        throw ImportError(
            QStringLiteral("l'intestazione annuncia %1 righe ma il file finisce alla riga %2; copiarlo di "
                           "nuovo dall'origine o ripristinarlo da una copia")
                .arg(m_recordCount)
                .arg(whole));
    }
    CountUnannounced(whole);
}

/// Behind the last row may stand an end mark and rubbish; what begins as a row does is one.
void DbfFile::CountUnannounced(qint64 most) {
    while (m_recordCount < most && m_file.seek(m_headerLength + m_recordCount * m_recordLength)) {
        const QByteArray mark = m_file.read(1);
        if (mark != " " && mark != "*") {
            break;
        }
        ++m_recordCount;
        ++m_unannounced;
    }
}

bool DbfFile::Next() {
    while (m_record < m_recordCount) {
        if (m_inBuffer == 0) {
            FillBuffer();
        }
        m_current = QByteArrayView(m_buffer).last(m_inBuffer * m_recordLength).first(m_recordLength);
        --m_inBuffer;
        ++m_record;
        if (m_current[0] == ' ') {
            return true;
        }
        if (m_current[0] != '*') {
            Fail(QStringLiteral("il contrassegno di riga cancellata non è valido; il file è danneggiato: ripristinarlo "
                                "da una copia"));
        }
    }
    return false;
}

void DbfFile::FillBuffer() {
    const qint64 wanted = std::clamp<qint64>(BufferBytes / m_recordLength, 1, m_recordCount - m_record);
    m_buffer = m_file.read(wanted * m_recordLength);
    if (m_buffer.size() != wanted * m_recordLength) {
        m_record += m_buffer.size() / m_recordLength + 1;
        Fail(QStringLiteral("il file non si legge oltre questa riga (%1)").arg(m_file.errorString()));
    }
    m_inBuffer = wanted;
}

bool DbfFile::HasFlag(int bit) const {
    if (bit < 0 || m_flagsField < 0) {
        return false;
    }
    const QByteArrayView flags = Bytes(m_fields[m_flagsField]);
    return bit / 8 < flags.size() && ((static_cast<unsigned char>(flags[bit / 8]) >> (bit % 8)) & 1) != 0;
}

void DbfFile::Fail(const QString& message) const {
    throw ImportError(QStringLiteral("File '%1', riga %2: %3").arg(m_fileName, QString::number(m_record), message));
}

} // namespace sources

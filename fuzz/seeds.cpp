// Writes what the fuzzers start from: seeds FOLDER makes a folder for each kind of source in FOLDER.

#include "fuzz/foreignFiles.h"
#include "tests/sources/dbfBytes.h"
#include "tests/sources/mdbBytes.h"

#include <cstdio>

namespace {

QByteArray FoxProTable() {
    dbfBytes::Table table{0x30,
                          0x03,
                          {{"codice", 'C', 5},
                           {"prezzo", 'N', 8, 2},
                           {"data", 'D', 8},
                           {"ora", 'T', 8},
                           {"note", 'M', 4},
                           {"attivo", 'L', 1},
                           {"numero", 'I', 4},
                           {"valore", 'Y', 8},
                           {"doppio", 'B', 8},
                           {"vario", 'V', 5, 0, 2},
                           {"_NullFlags", '0', 1, 0, 5}},
                          {},
                          1};
    table.rows = QByteArray(" 00001   12.5020240305", 22) + QByteArray(8, '\1') + QByteArray("\1\0\0\0T", 5) +
                 QByteArray(20, '\2') + QByteArray("ab \0\3\1", 6);
    return table.Bytes();
}

QByteArray FoxProMemos() {
    QByteArray bytes(64, '\0');
    bytes[7] = 64;
    bytes[3] = 2;
    return bytes + QByteArray("\0\0\0\1\0\0\0\4nota", 12);
}

QByteArray DBaseTable(int version) {
    return dbfBytes::Table{version, 0, {{"codice", 'C', 5}, {"note", 'M', 10}}, " 00001         1*00002          ", 2}
        .Bytes();
}

QByteArray DBaseMemos() { return QByteArray(512, '\0') + QByteArray("\xff\xff\x08\0\x0c\0\0\0nota\x1a\x1a", 14); }

QByteArray AccessDatabase() {
    using namespace mdbBytes;
    const Table table{
        "Articoli",
        {{"Codice", 10, 0},
         {"Prezzo", 5, 8},
         {"Peso", 16, 17, 18, 4},
         {"Data", 8, 8},
         {"Note", 12, 0},
         {"Attivo", 1, 0},
         {"Foto", 11, 0}},
        {{Utf16("00120"), RawBytes(qint64(12345)), QByteArray(17, '\0'), RawBytes(45356.5),
          LongValue(Kept::OneRow, 8, LongValueRow(1, 0)), "", LongValue(Kept::Chain, 4, LongValueRow(1, 1))},
         {QByteArray("\xff\xfe"
                     "A1",
                     4),
          RawBytes(qint64(-1)),
          QByteArray(17, '\1'),
          RawBytes(0.25),
          LongValue(Kept::Inline, 4, 0, Utf16("ab")),
          {},
          {}}}};
    return Database({table}, {Utf16("Nota"), RawBytes(quint32(0)) + QByteArray("foto")});
}

/// Files of a package; without bytes where it does not have one.
QVector<QByteArray> Unpacked(const QString& path, const QStringList& names) {
    zip_t* package = zip_open(QFile::encodeName(path).constData(), ZIP_RDONLY, nullptr);
    QVector<QByteArray> files;
    for (const QString& name : names) {
        QByteArray bytes;
        zip_stat_t about;
        zip_file_t* file = zip_fopen(package, name.toUtf8().constData(), 0);
        if (file != nullptr && zip_stat(package, name.toUtf8().constData(), 0, &about) == 0) {
            bytes.resize(static_cast<qsizetype>(about.size));
            zip_fread(file, bytes.data(), about.size);
            zip_fclose(file);
        }
        files.append(bytes);
    }
    zip_discard(package);
    return files;
}

void WriteSeed(const QString& path, const QVector<QByteArray>& files) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(foreignFiles::Join(files)) < 0) {
        std::fprintf(stderr, "cannot write %s\n", qPrintable(path));
        std::exit(1);
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "seeds FOLDER\n");
        return 2;
    }
    const QDir folder(argv[1]);
    for (const char* kind : {"FoxPro", "Text", "Access", "Workbook", "Xlsx", "Ods", "Fixed"}) {
        folder.mkpath(kind);
    }
    WriteSeed(folder.filePath("FoxPro/foxpro"), {FoxProTable(), FoxProMemos(), "", "", "", ""});
    WriteSeed(folder.filePath("FoxPro/dbase3"), {DBaseTable(0x83), "", DBaseMemos(), "", "", "cp850"});
    WriteSeed(folder.filePath("FoxPro/dbase4"), {DBaseTable(0x8b), "", DBaseMemos(), "", "", "cp850"});
    WriteSeed(folder.filePath("Text/plain"), {"a;b\n1;\"due;\"\"\n\"\n", ""});
    WriteSeed(folder.filePath("Text/schema"),
              {"1,x\n",
               "[t.csv]\nFormat=CSVDelimited\nColNameHeader=False\nCharacterSet=OEM\nCol1=A Text\nCol2=\"B\" Text\n"});
    WriteSeed(folder.filePath("Access/access2000"), {AccessDatabase()});
    WriteSeed(folder.filePath("Fixed/dump"), {"T00001 05032420240305    \r\nR0012345N 00012.50      \r\n\x1a"});
    const QDir workbooks(QUADRIX_SOURCE_DIR "/tests/sources/workbooks");
    for (const QString& name : workbooks.entryList({"*.xls", "*.xlsx", "*.ods"}, QDir::Files)) {
        const QString path = workbooks.filePath(name);
        QFile workbook(path);
        WriteSeed(folder.filePath("Workbook/" + name), {workbook.open(QIODevice::ReadOnly) ? workbook.readAll() : ""});
        if (name.endsWith(".xlsx")) {
            WriteSeed(folder.filePath("Xlsx/" + name), Unpacked(path, foreignFiles::Xlsx().files));
        } else if (name.endsWith(".ods")) {
            WriteSeed(folder.filePath("Ods/" + name), Unpacked(path, foreignFiles::Ods().files));
        }
    }
    return 0;
}

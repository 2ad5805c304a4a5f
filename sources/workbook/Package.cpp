#include "sources/workbook/Package.h"

#include "sql/errors.h"

#include <QFile>

#include <zip.h>

namespace sources {

void PackedFile::Close::operator()(zip_file* file) const noexcept { zip_fclose(file); }

PackedFile::PackedFile(zip_file* file)
    : m_file(file) {
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

qint64 PackedFile::readData(char* data, qint64 size) {
    const zip_int64_t read = zip_fread(m_file.get(), data, static_cast<zip_uint64_t>(size));
    m_isAtEnd = read <= 0;
    m_isDamaged = m_isDamaged || read < 0;
    return read;
}

bool PackedFile::IsWhole() {
    while (!read(1 << 16).isEmpty()) {
    }
    return !m_isDamaged;
}

void Package::Close::operator()(zip* archive) const noexcept { zip_discard(archive); }

Package::Package(const QString& path) {
    int code = 0;
    m_archive.reset(zip_open(QFile::encodeName(path).constData(), ZIP_RDONLY, &code));
    if (m_archive == nullptr) {
        zip_error_t error;
        zip_error_init_with_code(&error, code);
        const QString why = QString::fromUtf8(zip_error_strerror(&error));
        zip_error_fini(&error);
        throw ImportError(
            QStringLiteral("il file è danneggiato o incompleto (%1): copiarlo di nuovo dall'origine").arg(why));
    }
}

bool Package::Has(const QString& name) const {
    return zip_name_locate(m_archive.get(), name.toUtf8().constData(), ZIP_FL_NOCASE) >= 0;
}

std::unique_ptr<PackedFile> Package::Open(const QString& name) {
    zip_file_t* file = zip_fopen(m_archive.get(), name.toUtf8().constData(), ZIP_FL_NOCASE);
    if (file == nullptr) {
        throw ImportError(QStringLiteral("la parte '%1' del file non si può leggere (%2): copiarlo di nuovo "
                                         "dall'origine, senza password")
                              .arg(name, QString::fromUtf8(zip_strerror(m_archive.get()))));
    }
    return std::make_unique<PackedFile>(file);
}

} // namespace sources

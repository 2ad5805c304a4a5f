#pragma once

#include <QIODevice>

#include <memory>

struct zip;
struct zip_file;

namespace sources {

/// A file of a package while it is unpacked.
class PackedFile final : public QIODevice {
public:
    explicit PackedFile(zip_file* file);
    bool isSequential() const override { return true; }
    bool atEnd() const override { return m_isAtEnd; }
    /// Reads on to the end; false when what has been read is not what was packed.
    bool IsWhole();

protected:
    qint64 readData(char* data, qint64 size) override;
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    struct Close {
        void operator()(zip_file* file) const noexcept;
    };
    std::unique_ptr<zip_file, Close> m_file;
    bool m_isAtEnd = false;
    bool m_isDamaged = false;
};

/// A package of compressed files, as those of Office are.
class Package {
public:
    /// Raises `ImportError` saying why it cannot be opened.
    explicit Package(const QString& path);

    bool Has(const QString& name) const;
    /// Opens a file of the package for reading forward. Raises `ImportError` naming one that is missing or encrypted.
    std::unique_ptr<PackedFile> Open(const QString& name);

private:
    struct Close {
        void operator()(zip* archive) const noexcept;
    };
    std::unique_ptr<zip, Close> m_archive;
};

} // namespace sources

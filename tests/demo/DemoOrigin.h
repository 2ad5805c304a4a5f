#pragma once

#include "tests/adapters/modules.h"

/// An origin of the list as a consultant finds it at a customer: a folder with its source, a settings file that names
/// it, the rows that Quadrix has before, and what he imports one after the other. The source is the example of the
/// origin where that has what every procedure reads, else the small sources that its modules are tested with.
class DemoOrigin {
public:
    /// @param folder is made @param company that it is imported into
    DemoOrigin(const contract::Origin& origin, QString folder, QString company);

    /// Writes sources, "Quadrix.ini" and "quadrix.sql". Raises `ImportError`.
    void Write();
    /// A line for each procedure: folder, company, origin, procedure, what "--data" names it by, further options, with
    /// tabs between.
    const QStringList& Imports() const { return m_imports; }
    /// Procedures that no source is there for, or that ask for what no test tells.
    const QStringList& WithoutSource() const { return m_withoutSource; }
    /// The ODBC data source that the origin opens by a name of its own, as an entry of "odbc.ini"; empty without one.
    const QString& DataSource() const { return m_dataSource; }

private:
    /// One of the small sources, with the origin that it is opened as.
    struct Source {
        QString fixture;
        const contract::Origin* origin;
        QString path = {};        ///< of the database or of the folder of files
        QString files = {};       ///< folder of the files that are chosen or attached
        QString preparation = {}; ///< of an example: the script of the rows that Quadrix has before
    };
    /// A line of a "run.txt" that is run.
    struct Line {
        const contract::Procedure* procedure;
        qsizetype source; ///< in `m_sources`
        qsizetype place;  ///< in its file
        QStringList words;
    };

    void Choose();
    bool MakeExample();
    bool HasEverything(const QString& path) const;
    std::optional<Line> LineOf(const contract::Procedure& procedure);
    qsizetype SourceAt(const QString& fixture, const contract::Origin& origin);
    void MakeSource(Source& source);
    void WriteDatabase(Source& source, const QString& script);
    void WriteSettings() const;
    void WriteTargetRows() const;
    QString DataOf(const contract::Procedure& procedure) const;
    QString ImportOf(const Line& line) const;
    QStringList AnswersOf(const Line& line) const;
    QStringList FilesOf(const Line& line) const;

    const contract::Origin& m_origin;
    QString m_folder;
    QString m_company;
    QVector<Source> m_sources;
    std::vector<Line> m_lines;
    QStringList m_imports;
    QStringList m_withoutSource;
    QString m_dataSource;
};

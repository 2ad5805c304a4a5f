#pragma once

#include "examples/examples.h"
#include "tests/support/TestWindow.h"

#include <QPlainTextEdit>

/// A started window with the company and Arca 2000 chosen, and a source of 120 counterparties behind it.
class ArcaWindow : public TestWindow {
public:
    static inline const QString Company = "Officine Dimostrative S.r.l.";
    static constexpr qint64 RowCount = 120;

    ArcaWindow() {
        examples::Options options;
        options.rows = RowCount;
        options.folder = Folder.filePath("arca");
        options.company = "DEM";
        options.tables = QStringList{"controparti"};
        examples::Make("arca2000", options);
        Set("IMPORT", "Databasename", options.folder);
        Start();
        Choose("cmbAzienda", Company);
        Choose("cmbOrigine", "Arca 2000");
    }

    const RunResult& Result() { return Get().Results.last(); }
    QString Text(const char* name) { return Window().findChild<QPlainTextEdit*>(name)->toPlainText(); }
    /// Makes the insertion of one counterparty fail.
    void FailAt(const QString& code) {
        Get().Quadrix.Execute("CREATE TRIGGER Guasto BEFORE INSERT ON DEM_CON_TRO WHEN NEW.CDCON = '" + code +
                              "' BEGIN SELECT RAISE(ABORT, 'riga rifiutata'); END");
    }
};

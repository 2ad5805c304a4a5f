#pragma once

#include "app/startUp.h"
#include "core/createDatabase.h"
#include "tests/support/embedded.h"
#include "ui/frmImport.h"
#include "ui/WindowOperator.h"

#include <QComboBox>
#include <QGuiApplication>
#include <QPushButton>
#include <QTemporaryDir>

/// A main window over a settings folder and an embedded Quadrix database of its own, with the company "DEM" in it.
class TestWindow {
public:
    TestWindow()
        : m_session(m_person) {
        QGuiApplication::setQuitOnLastWindowClosed(false);
        OpenEmbedded(m_session.Quadrix, Folder.filePath("quadrix.db"));
        CreateDatabase(m_session.Quadrix, "DEM", "Officine Dimostrative S.r.l.");
        m_session.Quadrix.CloseConnection();
        Set("DATABASE", "Provider", "SQLITE");
        Set("DATABASE", "DatabaseName", "quadrix.db");
    }

    /// Writes a setting into the settings file.
    void Set(const QString& section, const QString& key, const QString& value) {
        SettingsFile(Folder.filePath("Quadrix.ini")).Write(section, key, value);
    }
    QString Setting(const QString& section, const QString& key) {
        return SettingsFile(Folder.filePath("Quadrix.ini")).Read(section, key);
    }

    /// Starts the program as its `main` does.
    frmImport& Start(StartMode mode = StartMode::None) {
        modMain::Main(m_session, Folder.filePath("Quadrix.ini"), [&] {
            m_session.LogFile = Folder.filePath("import.log");
            m_window = std::make_unique<frmImport>(m_session, m_person);
            m_window->Form_Load(mode);
            m_window->show();
        });
        return *m_window;
    }

    frmImport& Window() { return *m_window; }
    Session& Get() { return m_session; }
    WindowOperator& Person() { return m_person; }
    QComboBox& List(const QString& name) { return *m_window->findChild<QComboBox*>(name); }
    QPushButton& Button(const QString& name) { return *m_window->findChild<QPushButton*>(name); }
    /// Chooses an item of a list by its text; a text that is not there chooses none.
    void Choose(const QString& list, const QString& text) { List(list).setCurrentIndex(List(list).findText(text)); }
    /// First column of the first row; empty without a row.
    QString Value(const QString& query) {
        const Recordset rows = m_session.Quadrix.ExecuteWC(query);
        return rows.Eof() ? QString() : rows.Fields(0).Value().toString();
    }

    QTemporaryDir Folder;

private:
    WindowOperator m_person;
    Session m_session;
    std::unique_ptr<frmImport> m_window;
};

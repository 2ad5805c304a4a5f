#pragma once

#include "app/sourceChoice.h"

#include <QDialog>

class QCheckBox;
class QComboBox;
class QFormLayout;
class QLineEdit;

/// Chooses the source that an origin reads: a file or a folder with those read lately, a server with its database, or
/// a data source. What is chosen is written into the settings.
class frmSource final : public QDialog {
    Q_OBJECT

public:
    frmSource(Session& session, const contract::Origin& origin, QWidget* parent);

    /// What stands in the fields.
    sourceChoice::Source Chosen() const;

private:
    void Lay(const QString& title);
    void AddPath(QFormLayout& lines);
    void AddServer(QFormLayout& lines);
    void AddDataSource(QFormLayout& lines);
    void AddUser(QFormLayout& lines);
    void EnableUser();
    std::optional<QString> NewPassword() const;
    void Browse();
    void cmdOk_Click();

    Session& m_session;
    const contract::Origin& m_origin;
    sourceChoice::Source m_source;
    QComboBox* m_path = nullptr;
    QLineEdit* m_server = nullptr;
    QLineEdit* m_database = nullptr;
    QLineEdit* m_dsn = nullptr;
    QLineEdit* m_user = nullptr;
    QLineEdit* m_password = nullptr;
    QCheckBox* m_integrated = nullptr;
    QCheckBox* m_noPassword = nullptr;
};

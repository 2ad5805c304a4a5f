#include "ui/frmSource.h"

#include "core/Operator.h"
#include "ui/choiceDialog.h"
#include "ui/told.h"
#include "ui/WrappedLabel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

using contract::Place;

namespace {

constexpr int SourceWidth = 72; ///< characters

QLineEdit* NewLine(const QString& name, const QString& accessibleName, const QString& text) {
    auto* line = new QLineEdit(text);
    line->setObjectName(name);
    line->setAccessibleName(accessibleName);
    return line;
}

} // namespace

frmSource::frmSource(Session& session, const contract::Origin& origin, QWidget* parent)
    : QDialog(parent),
      m_session(session),
      m_origin(origin),
      m_source(sourceChoice::Read(session, origin)) {
    setObjectName("frmSource");
    setWindowTitle("Sorgente di " + origin.name);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    const QStringList sections = sourceChoice::Sections(session, origin);
    Lay("Che cosa legge l'origine " + origin.name + " (" + origin.source.kind +
        "). La scelta si scrive nelle impostazioni, " + (sections.size() > 1 ? "sezioni [" : "sezione [") +
        sections.join("], [") + "].");
}

void frmSource::Lay(const QString& title) {
    auto* lines = new QFormLayout;
    lines->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    switch (m_source.place) {
    case Place::Folder:
    case Place::File:
        AddPath(*lines);
        break;
    case Place::Server:
        AddServer(*lines);
        AddUser(*lines);
        break;
    case Place::DataSource:
        AddDataSource(*lines);
        AddUser(*lines);
        break;
    default:
        lines->addRow(new WrappedLabel("Questa origine chiede la sorgente a ogni importazione: non c'è nulla da "
                                       "impostare."));
    }
    const choiceDialog::Buttons buttons = choiceDialog::NewButtons();
    buttons.cancel->setDefault(false); // nothing is deleted here: Enter takes what was typed
    buttons.cancel->setAutoDefault(false);
    buttons.ok->setDefault(true);
    connect(buttons.ok, &QPushButton::clicked, this, &frmSource::cmdOk_Click);
    connect(buttons.cancel, &QPushButton::clicked, this, &QDialog::reject);
    auto* all = new QVBoxLayout(this);
    all->addWidget(new WrappedLabel(title));
    all->addLayout(lines);
    all->addStretch();
    all->addLayout(buttons.row);
    resize(fontMetrics().averageCharWidth() * SourceWidth, sizeHint().height());
}

void frmSource::AddPath(QFormLayout& lines) {
    const bool isFolder = m_source.place == Place::Folder;
    m_path = new QComboBox;
    m_path->setObjectName("cmbPath");
    m_path->setAccessibleName(isFolder ? "Cartella della sorgente" : "File della sorgente");
    m_path->setEditable(true);
    m_path->setInsertPolicy(QComboBox::NoInsert);
    m_path->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_path->addItems(sourceChoice::Recent(m_session, m_source.place));
    m_path->setCurrentText(m_source.database);
    auto* browse = new QPushButton("S&foglia...");
    browse->setObjectName("cmdBrowse");
    browse->setAutoDefault(false);
    connect(browse, &QPushButton::clicked, this, &frmSource::Browse);
    auto* row = new QHBoxLayout;
    row->addWidget(m_path, 1);
    row->addWidget(browse);
    lines.addRow("&Percorso:", row);
    if (auto* label = qobject_cast<QLabel*>(lines.labelForField(row))) {
        label->setBuddy(m_path);
    }
}

void frmSource::AddServer(QFormLayout& lines) {
    m_server = NewLine("txtServer", "Server", m_source.server);
    m_database = NewLine("txtDatabase", "Database", m_source.database);
    m_database->setPlaceholderText("nome del database, o un file .sqlite");
    m_integrated = new QCheckBox("&Accesso integrato di Windows");
    m_integrated->setObjectName("chkIntegrated");
    m_integrated->setChecked(m_source.integrated);
    lines.addRow("&Server:", m_server);
    lines.addRow("&Database:", m_database);
    lines.addRow(QString(), m_integrated);
}

void frmSource::AddDataSource(QFormLayout& lines) {
    m_dsn = NewLine("txtDsn", "Origine dati ODBC", m_source.dsn);
    lines.addRow("O&rigine dati ODBC:", m_dsn);
}

void frmSource::AddUser(QFormLayout& lines) {
    m_user = NewLine("txtUser", "Utente", m_source.user);
    m_password = NewLine("txtPassword", "Password", {});
    m_password->setEchoMode(QLineEdit::Password);
    m_password->setPlaceholderText("lasciare vuota per non cambiarla");
    lines.addRow("&Utente:", m_user);
    lines.addRow("&Password:", m_password);
    m_noPassword = new QCheckBox("&Togliere la password registrata");
    m_noPassword->setObjectName("chkNoPassword");
    lines.addRow(QString(), m_noPassword);
    connect(m_noPassword, &QCheckBox::toggled, this, &frmSource::EnableUser);
    if (m_integrated != nullptr) {
        connect(m_integrated, &QCheckBox::toggled, this, &frmSource::EnableUser);
    }
    EnableUser();
}

void frmSource::EnableUser() {
    const bool hasUser = m_integrated == nullptr || !m_integrated->isChecked();
    m_user->setEnabled(hasUser);
    m_noPassword->setEnabled(hasUser && m_source.hasPassword);
    m_password->setEnabled(hasUser && !m_noPassword->isChecked());
}

/// What the password becomes; none when it stays as it is.
std::optional<QString> frmSource::NewPassword() const {
    if (m_noPassword != nullptr && m_noPassword->isEnabled() && m_noPassword->isChecked()) {
        return QString();
    }
    const bool isTyped = m_password != nullptr && m_password->isEnabled() && !m_password->text().isEmpty();
    return isTyped ? std::optional(m_password->text()) : std::nullopt;
}

void frmSource::Browse() {
    const QString from = m_path->currentText();
    const QString chosen = m_source.place == Place::Folder
                               ? QFileDialog::getExistingDirectory(this, "Cartella della sorgente", from)
                               : QFileDialog::getOpenFileName(this, "File della sorgente", from,
                                                              "File di Access (*.mdb *.accdb);;Tutti i file (*)");
    if (!chosen.isEmpty()) {
        m_path->setCurrentText(QDir::toNativeSeparators(chosen));
    }
}

sourceChoice::Source frmSource::Chosen() const {
    sourceChoice::Source source = m_source;
    const auto take = [](QString& value, const QLineEdit* line) {
        value = line == nullptr ? value : line->text().trimmed();
    };
    take(source.server, m_server);
    take(source.database, m_database);
    take(source.dsn, m_dsn);
    take(source.user, m_user);
    source.database = m_path == nullptr ? source.database : m_path->currentText().trimmed();
    source.integrated = m_integrated == nullptr ? source.integrated : m_integrated->isChecked();
    return source;
}

void frmSource::cmdOk_Click() {
    const sourceChoice::Source chosen = Chosen();
    if (!Told(m_session.Person, [&] { sourceChoice::Write(m_session, m_origin, m_source, chosen, NewPassword()); })) {
        return;
    }
    if (m_path != nullptr) {
        sourceChoice::Remember(m_session, chosen.place, chosen.database);
    }
    accept();
}

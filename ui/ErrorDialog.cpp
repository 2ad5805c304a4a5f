#include "ui/ErrorDialog.h"

#include "core/Operator.h"
#include "ui/WrappedLabel.h"

#include <QClipboard>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

namespace {

constexpr int WidthInCharacters = 84;
constexpr int MostDetailLines = 8;

/// A text that can be selected.
WrappedLabel* NewText(const QString& name, const QString& text) {
    auto* label = new WrappedLabel(text);
    label->setObjectName(name);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    return label;
}

} // namespace

ErrorDialog::ErrorDialog(const ErrorEntry& error, Kind kind, QWidget* parent)
    : QDialog(parent) {
    setObjectName("dlgError");
    setWindowTitle(QuadrixCaption);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    Lay(error, kind);
}

void ErrorDialog::Lay(const ErrorEntry& error, Kind kind) {
    auto* icon = new QLabel;
    const int iconSize = style()->pixelMetric(QStyle::PM_MessageBoxIconSize);
    icon->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(iconSize));
    auto* message = NewText("lblMessage", error.message);
    message->setMinimumWidth(fontMetrics().averageCharWidth() * WidthInCharacters);
    auto* top = new QHBoxLayout;
    top->addWidget(icon, 0, Qt::AlignTop);
    top->addWidget(message, 1);
    auto* all = new QVBoxLayout(this);
    all->addLayout(top);
    const QString procedure = error.module.isEmpty() ? QString() : QString(error.module + "." + error.procedure);
    AddDetail(*all, "Procedura", "lblProcedure", procedure);
    AddDetail(*all, "Riga dell'origine", "lblRow", error.rowKey);
    AddDetail(*all, "Risposta del database", "lblEngine", error.engineMessage);
    AddStatement(*all, error.statement);
    auto* buttons = new QDialogButtonBox;
    AddCopy(*buttons, TextOf(error));
    if (kind == Kind::Choice) {
        AddChoices(*buttons, !error.rowKey.isEmpty());
    } else {
        QPushButton* close = buttons->addButton("OK", QDialogButtonBox::AcceptRole);
        close->setObjectName("cmdOk");
        close->setDefault(true);
        connect(close, &QPushButton::clicked, this, &QDialog::accept);
    }
    all->addWidget(buttons);
}

void ErrorDialog::AddDetail(QVBoxLayout& layout, const QString& title, const QString& name, const QString& text) {
    if (!text.isEmpty()) {
        layout.addWidget(NewText(name, title + ": " + text));
    }
}

void ErrorDialog::AddStatement(QVBoxLayout& layout, const QString& text) {
    if (text.isEmpty()) {
        return;
    }
    auto* box = new QPlainTextEdit(text);
    box->setObjectName("txtStatement");
    box->setAccessibleName("Istruzione");
    box->setReadOnly(true);
    box->setTabChangesFocus(true);
    box->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    const int lines = std::clamp(static_cast<int>(text.count(u'\n') + text.count(u'\r')) + 2, 2, MostDetailLines);
    box->setMinimumHeight(box->fontMetrics().lineSpacing() * lines + 2 * box->frameWidth());
    layout.addWidget(new QLabel("Istruzione:"));
    layout.addWidget(box, 1);
}

void ErrorDialog::AddChoices(QDialogButtonBox& buttons, bool inRow) {
    const auto add = [&](const QString& text, const QString& name, ErrorAnswer answer, const QString& hint) {
        QPushButton* button = buttons.addButton(text, QDialogButtonBox::ActionRole);
        button->setObjectName(name);
        button->setToolTip(hint);
        button->setAccessibleDescription(hint);
        connect(button, &QPushButton::clicked, this, [this, answer] {
            m_answer = answer;
            accept();
        });
        return button;
    };
    add("&Riprova", "cmdRetry", ErrorAnswer::Retry, "Esegue di nuovo l'istruzione")->setDefault(true);
    QPushButton* ignore = add("&Ignora", "cmdIgnore", ErrorAnswer::Ignore,
                              inRow ? "Abbandona questa riga e prosegue con la successiva"
                                    : "Nessuna riga è in corso: non c'è nulla da saltare");
    ignore->setEnabled(inRow);
    add("I&nterrompi", "cmdAbort", ErrorAnswer::Abort, "Termina la procedura; le righe già scritte restano");
}

void ErrorDialog::AddCopy(QDialogButtonBox& buttons, const QString& text) {
    QPushButton* copy = buttons.addButton("&Copia", QDialogButtonBox::ActionRole);
    copy->setObjectName("cmdCopy");
    copy->setToolTip("Copia l'errore negli appunti");
    copy->setAutoDefault(false);
    connect(copy, &QPushButton::clicked, this, [text] { QGuiApplication::clipboard()->setText(text); });
}

QString ErrorDialog::TextOf(const ErrorEntry& error) {
    QStringList lines{error.time.toString("dd/MM/yyyy HH:mm:ss"), error.message};
    const auto add = [&lines](const QString& title, const QString& text) {
        if (!text.isEmpty()) {
            lines.append(title + ": " + text);
        }
    };
    add("Procedura", error.module.isEmpty() ? QString() : QString(error.module + "." + error.procedure));
    add("Riga dell'origine", error.rowKey);
    add("Istruzione", error.statement);
    add("Risposta del database", error.engineMessage);
    return lines.join(u'\n');
}

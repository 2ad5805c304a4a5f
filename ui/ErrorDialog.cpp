#include "ui/ErrorDialog.h"

#include "core/italianText.h"
#include "core/Operator.h"
#include "ui/mnemonics.h"
#include "ui/WrappedLabel.h"

#include <QClipboard>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int ErrorTextWidth = 84; ///< characters
constexpr int MostDetailLines = 8;

/// A text that can be selected.
WrappedLabel* NewText(const QString& name, const QString& text) {
    auto* label = new WrappedLabel(text);
    label->setObjectName(name);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    return label;
}

/// A message that begins with a word begins a sentence here; a name stays as it is written.
QString AsSentence(const QString& message) {
    const qsizetype blank = message.indexOf(u' ');
    const bool isWord = blank > 0 && std::all_of(message.cbegin(), message.cbegin() + blank,
                                                 [](QChar c) { return c.isLetter() && c.isLower(); });
    return isWord ? QString(message.at(0).toUpper() + message.mid(1)) : message;
}

QString ProcedureOf(const ErrorEntry& error) {
    return error.module.isEmpty() ? QString() : QString(error.module + "." + error.procedure);
}

/// The engine's own words, where the message does not hold them already.
QString EngineWordsBeside(const ErrorEntry& error) {
    const QString words = error.engineMessage.left(error.engineMessage.lastIndexOf(QLatin1String(" [")));
    return error.message.contains(words) ? QString() : error.engineMessage;
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
    auto* message = NewText("lblMessage", AsSentence(error.message));
    message->setMinimumWidth(fontMetrics().averageCharWidth() * ErrorTextWidth);
    auto* top = new QHBoxLayout;
    top->addWidget(icon, 0, Qt::AlignTop);
    top->addWidget(message, 1);
    auto* all = new QVBoxLayout(this);
    all->addLayout(top);
    AddDetail(*all, "Riga dell'origine", "lblRow", error.rowKey);
    AddDetail(*all, "Procedura", "lblProcedure", ProcedureOf(error));
    AddDetail(*all, "Risposta del database", "lblEngine", EngineWordsBeside(error));
    AddStatement(*all, error.statement);
    if (error.statement.isEmpty()) {
        all->addStretch();
    }
    auto* buttons = new QDialogButtonBox(this); // its buttons must know their dialog to be its default
    AddCopy(*buttons, TextOf(error));
    if (kind == Kind::Choice) {
        AddChoices(*buttons, error);
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

QPushButton* ErrorDialog::AddChoice(QDialogButtonBox& buttons, const QString& text, const QString& name,
                                    ErrorAnswer answer) {
    QPushButton* button = buttons.addButton(text, QDialogButtonBox::ActionRole);
    button->setObjectName(name);
    connect(button, &QPushButton::clicked, this, [this, answer] {
        m_answer = answer;
        accept();
    });
    return button;
}

void ErrorDialog::AddChoices(QDialogButtonBox& buttons, const ErrorEntry& error) {
    const bool inRow = !error.rowKey.isEmpty();
    const auto add = [&](const QString& text, const QString& name, ErrorAnswer answer, const QString& hint) {
        QPushButton* button = AddChoice(buttons, text, name, answer);
        button->setToolTip(hint);
        button->setAccessibleDescription(hint);
        return button;
    };
    const QString nothingToSkip = "Nessuna riga è in corso: non c'è nulla da saltare";
    QPushButton* retry = add("&Riprova", "cmdRetry", ErrorAnswer::Retry, "Esegue di nuovo l'istruzione");
    QPushButton* ignore = add("&Ignora", "cmdIgnore", ErrorAnswer::Ignore,
                              inRow ? "Abbandona questa riga e prosegue con la successiva" : nothingToSkip);
    QPushButton* ignoreAll =
        add("Ignora &tutti", "cmdIgnoreAll", ErrorAnswer::IgnoreAll,
            inRow ? "Fino alla fine di questa operazione abbandona senza chiedere ogni riga che non riesce"
                  : nothingToSkip);
    QPushButton* abort =
        add("I&nterrompi", "cmdAbort", ErrorAnswer::Abort, "Termina la procedura; le righe già scritte restano");
    ignore->setEnabled(inRow);
    ignoreAll->setEnabled(inRow);
    QPushButton* byDefault = error.mayPass ? retry : inRow ? ignore : abort;
    byDefault->setDefault(true);
    byDefault->setFocus();
}

void ErrorDialog::keyPressEvent(QKeyEvent* event) {
    const QString typed = event->text().toLower();
    for (QPushButton* button : findChildren<QPushButton*>()) {
        const QChar letter = MnemonicOf(button->text());
        if (event->modifiers() == Qt::NoModifier && button->isEnabled() && !letter.isNull() && typed == letter) {
            button->animateClick();
            return;
        }
    }
    QDialog::keyPressEvent(event);
}

void ErrorDialog::AddCopy(QDialogButtonBox& buttons, const QString& text) {
    QPushButton* copy = buttons.addButton("&Copia", QDialogButtonBox::ActionRole);
    copy->setObjectName("cmdCopy");
    copy->setToolTip("Copia l'errore negli appunti");
    copy->setAutoDefault(false);
    connect(copy, &QPushButton::clicked, this, [text] { QGuiApplication::clipboard()->setText(text); });
}

QString ErrorDialog::TextOf(const ErrorEntry& error) {
    QStringList lines{italian::MomentText(error.time), error.message};
    const auto add = [&lines](const QString& title, const QString& text) {
        if (!text.isEmpty()) {
            lines.append(title + ": " + text);
        }
    };
    add("Procedura", ProcedureOf(error));
    add("Riga dell'origine", error.rowKey);
    add("Istruzione", error.statement);
    add("Risposta del database", error.engineMessage);
    return lines.join(u'\n');
}

#include "ui/WindowOperator.h"

#include "sql/visibleText.h"
#include "ui/ErrorDialog.h"
#include "ui/frmProgress.h"
#include "ui/ReviewDialog.h"

#include <QApplication>
#include <QFileDialog>
#include <QInputDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QRegularExpression>

#include <utility>

namespace {

constexpr int LeaveEvery = 50; ///< milliseconds between two looks for dialogs that keep the program from its end

/// The usual pointer while a dialog waits for the operator; the hourglass comes back behind it.
class PointerPause {
public:
    explicit PointerPause(bool busy)
        : m_busy(busy) {
        if (m_busy) {
            QGuiApplication::restoreOverrideCursor();
        }
    }
    ~PointerPause() {
        if (m_busy) {
            QGuiApplication::setOverrideCursor(Qt::WaitCursor);
        }
    }
    PointerPause(const PointerPause&) = delete;
    PointerPause& operator=(const PointerPause&) = delete;

private:
    bool m_busy;
};

QPushButton* AddButton(QMessageBox& box, const QString& text, const QString& name, QMessageBox::ButtonRole role) {
    QPushButton* button = box.addButton(text, role);
    button->setObjectName(name);
    return button;
}

} // namespace

QWidget* WindowOperator::Parent() const {
    QWidget* modal = QApplication::activeModalWidget();
    return modal != nullptr ? modal : m_window;
}

void WindowOperator::End() {
    const bool isFirst = !std::exchange(m_ending, true);
    CancelProgresses();
    LeaveDialogs();
    // One beneath a progress is left when that is gone, and so is one that the operation under way opens yet.
    if (isFirst) {
        m_leaving.callOnTimeout([this] { LeaveDialogs(); });
        m_leaving.start(LeaveEvery);
    }
}

/// Leaves the dialogs that wait, the innermost first; that of a progress has been told already.
void WindowOperator::LeaveDialogs() {
    for (QWidget* modal = QApplication::activeModalWidget(); modal != nullptr;) {
        auto* box = qobject_cast<QDialog*>(modal);
        if (box == nullptr || qobject_cast<frmProgress*>(box) != nullptr) {
            return;
        }
        box->done(QDialog::Rejected); // rejecting one may ask first, and nobody is asked any more
        QWidget* next = QApplication::activeModalWidget();
        modal = next == modal ? nullptr : next;
    }
}

void WindowOperator::CancelProgresses() {
    m_progresses.removeAll(nullptr);
    for (const QPointer<frmProgress>& progress : std::as_const(m_progresses)) {
        progress->cmdCancel_Click();
    }
}

int WindowOperator::Exec(QDialog& dialog) {
    if (m_ending) {
        return QDialog::Rejected;
    }
    const Waiting waiting(*this);
    const PointerPause pause(IsBusy());
    return dialog.exec();
}

int WindowOperator::Run(QMessageBox& box) {
    box.setWindowTitle(QuadrixCaption);
    // What is told holds values of the source: no label may take a "<" in them for the start of a tag.
    for (QLabel* label : box.findChildren<QLabel*>()) {
        label->setTextFormat(Qt::PlainText);
    }
    return Exec(box);
}

void WindowOperator::ShowMessage(const QString& text, Icon icon) {
    QMessageBox box(Parent());
    box.setIcon(icon == Icon::Information ? QMessageBox::Information : QMessageBox::Warning);
    box.setText(text);
    AddButton(box, "OK", "cmdOk", QMessageBox::AcceptRole);
    Run(box);
}

Answer WindowOperator::Ask(const QString& question, Question style, const QString& details) {
    const bool plain = style == Question::Plain || style == Question::PlainNo;
    const bool noByDefault = style == Question::PlainNo || style == Question::ExclamationNo;
    QMessageBox box(Parent());
    box.setIcon(plain ? QMessageBox::Question : QMessageBox::Warning);
    box.setText(VisibleText(question));
    box.setInformativeText(VisibleText(details));
    QPushButton* yes = AddButton(box, "&Sì", "cmdYes", QMessageBox::YesRole);
    QPushButton* no = AddButton(box, "&No", "cmdNo", QMessageBox::NoRole);
    QPushButton* giveUp = AddButton(box, {}, "cmdGiveUp", QMessageBox::RejectRole);
    giveUp->hide(); // the box needs a button behind Esc and its close button
    box.setDefaultButton(noByDefault ? no : yes);
    box.setEscapeButton(giveUp);
    Run(box);
    if (box.clickedButton() == yes) {
        return Answer::Yes;
    }
    return box.clickedButton() == no ? Answer::No : Answer::GivenUp;
}

bool WindowOperator::Review(const QString& question, const QStringList& lines) {
    QStringList seen;
    for (const QString& line : lines) {
        seen.append(VisibleLine(line));
    }
    ReviewDialog dialog(VisibleText(question), seen, Parent());
    return Exec(dialog) == QDialog::Accepted;
}

std::optional<QString> WindowOperator::Input(const QString& prompt, const QString& title, const QString& defaultText) {
    QInputDialog dialog(Parent());
    dialog.setWindowTitle(title.isEmpty() ? QuadrixCaption : title);
    dialog.setLabelText(prompt);
    dialog.setTextValue(defaultText);
    dialog.setOkButtonText("OK");
    dialog.setCancelButtonText("Annulla");
    if (prompt.contains("password", Qt::CaseInsensitive)) {
        dialog.setTextEchoMode(QLineEdit::Password);
    }
    return Exec(dialog) == QDialog::Accepted ? std::optional(dialog.textValue()) : std::nullopt;
}

QString WindowOperator::OpenFile(const QString& title, const QString& filter) {
    if (m_ending) {
        return {};
    }
    const Waiting waiting(*this);
    const PointerPause pause(IsBusy());
    return QFileDialog::getOpenFileName(Parent(), title, {}, FileDialogFilter(filter));
}

QString WindowOperator::SaveFile(const QString& title, const QString& name, const QString& filter) {
    QFileDialog dialog(Parent(), title, {}, FileDialogFilter(filter));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    // The dialog itself completes the name: it asks about the file that will be written.
    const auto takeEnding = [&dialog](const QString& chosen) {
        static const QRegularExpression ending(QStringLiteral("\\*\\.(\\w+)"));
        dialog.setDefaultSuffix(ending.match(chosen).captured(1));
    };
    QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, takeEnding);
    takeEnding(dialog.selectedNameFilter());
    dialog.selectFile(name);
    return Exec(dialog) == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}

ErrorAnswer WindowOperator::ChooseOnError(const ErrorEntry& error) {
    ErrorDialog dialog(error, ErrorDialog::Kind::Choice, Parent());
    Exec(dialog);
    return dialog.Answer();
}

void WindowOperator::ShowError(const ErrorEntry& error) {
    ErrorDialog dialog(error, ErrorDialog::Kind::Report, Parent());
    Exec(dialog);
}

std::unique_ptr<Progress> WindowOperator::ShowProgress() {
    auto dialog = std::make_unique<frmProgress>(Parent(), [this] { return WorkedSeconds(); });
    QObject::connect(dialog.get(), &frmProgress::CancelAsked, dialog.get(), [this](bool& agreed) {
        agreed = Ask("Interrompere l'operazione in corso?", Question::ExclamationNo) == Answer::Yes;
    });
    if (m_errorAction != nullptr) {
        dialog->OfferErrors(*m_errorAction);
    }
    m_progresses.removeAll(nullptr);
    m_progresses.append(dialog.get());
    if (m_ending) {
        dialog->cmdCancel_Click();
    }
    return dialog;
}

bool WindowOperator::AskToStop(const QString& question) {
    m_progresses.removeAll(nullptr);
    if (m_progresses.isEmpty() || Ask(question, Question::ExclamationNo) != Answer::Yes) {
        return false;
    }
    CancelProgresses();
    return true;
}

void WindowOperator::ShowBusy(bool busy) {
    if (busy) {
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    } else {
        QGuiApplication::restoreOverrideCursor();
    }
}

QString FileDialogFilter(const QString& filter) {
    const QStringList parts = filter.split(u'|');
    QStringList result;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        QString patterns = parts.at(i + 1).trimmed();
        QString description = parts.at(i).trimmed();
        if (const qsizetype bracket = description.lastIndexOf(u'('); bracket > 0 && description.endsWith(u')')) {
            description = description.left(bracket).trimmed();
        }
        // "*.*" means every file, those without a dot too.
        patterns = patterns == u"*.*" ? QStringLiteral("*") : patterns.replace(u';', u' ');
        result.append(description + " (" + patterns + ")");
    }
    return result.join(QStringLiteral(";;"));
}

#pragma once

#include "sql/ovErrors.h"

#include <QElapsedTimer>

#include <memory>
#include <optional>

/// Caption of every message box.
inline const QString QuadrixCaption = QStringLiteral("Quadrix Data Import");

enum class Icon { Information, Exclamation };

/// A yes/no question's look.
enum class Question {
    Plain,         ///< question icon
    PlainNo,       ///< question icon, No is the default button
    Exclamation,   ///< exclamation icon
    ExclamationNo, ///< exclamation icon, No is the default button
};

/// What came of a yes/no question. Giving up (Esc, the close button of the box, the end of the input) is no No: it
/// takes back the whole of what was begun.
enum class Answer { Yes, No, GivenUp };

/// The progress dialog of a long operation. How it is drawn is up to the operator's side; the rules are here.
class Progress {
public:
    virtual ~Progress() = default;

    /// True once the operator pressed cancel.
    virtual bool Cancel() const = 0;
    float Max() const { return m_max; }
    void SetMax(float max);
    float Value() const { return m_value; }
    /// A value of the maximum or more becomes the maximum. Then the operator's side gets its turn, so that a click on
    /// cancel is seen.
    void SetValue(float value);
    /// Shows "Importazione in corso ", the text and "...".
    void SetStep(const QString& text);
    /// Gives the operator's side its turn while nothing changes.
    void Wait() { Refresh(); }
    const QString& Caption() const { return m_caption; }

protected:
    /// Shows the state as it is now. Called at every change; it may skip drawing, never the turn of the operator.
    virtual void Refresh() = 0;

private:
    float m_max = 100;
    float m_value = 0;
    QString m_caption;
};

/// The only way to reach a person. Every text goes out as it is given, but for characters that are not seen, under the
/// caption "Quadrix Data Import" unless a title is passed.
class Operator {
public:
    Operator();
    virtual ~Operator() = default;

    /// Shows a text; kept instead while a `Quiet` lives.
    void Message(const QString& text, Icon icon = Icon::Information);
    /// Tells something that stops nobody and asks for nothing: a line on a terminal; a window shows it at its own
    /// place.
    virtual void Note(const QString& /*text*/) {}
    /// A yes/no question. @param details what it is about, in lines of text, shown with the question
    virtual Answer Ask(const QString& question, Question style = Question::Plain, const QString& details = {}) = 0;
    /// Whether a further question can be asked, one that nobody could foresee: not where answers were given beforehand.
    virtual bool CanBeAskedMore() const { return true; }
    /// A yes/no question about a list that is looked through before; true for yes, No is the default.
    virtual bool Review(const QString& question, const QStringList& lines) = 0;
    /// Asks for a text; none when the operator gave up.
    virtual std::optional<QString> Input(const QString& prompt, const QString& title, const QString& defaultText) = 0;
    /// Lets the operator choose a file; an empty path when he gave up. @param filter "description|pattern" pairs
    virtual QString OpenFile(const QString& title, const QString& filter) = 0;
    /// What to do about a failing statement (Riprova, Ignora, Interrompi).
    virtual ErrorAnswer ChooseOnError(const ErrorEntry& error) = 0;
    /// Shows an error that ended a procedure; not while a `Quiet` lives, as the error collector has it.
    void ReportError(const ErrorEntry& error);
    /// Shows a progress dialog; it closes when the object goes.
    virtual std::unique_ptr<Progress> ShowProgress() = 0;

    /// Seconds of work since the operator was made: while he is waited for, they stand still.
    double WorkedSeconds() const;

    /// True while a `Busy` lives.
    bool IsBusy() const { return m_busy > 0; }

    /// The hourglass for the lifetime of the object; the pointer found before is restored at the end.
    class Busy {
    public:
        explicit Busy(Operator& person);
        ~Busy();
        Busy(const Busy&) = delete;
        Busy& operator=(const Busy&) = delete;

    private:
        Operator& m_person;
    };

    /// Work that goes on alone: for the lifetime of the object no box waits that only wants to be read. Questions are
    /// asked as ever. Within another one it keeps the texts for itself.
    class Quiet {
    public:
        explicit Quiet(Operator& person);
        ~Quiet();
        Quiet(const Quiet&) = delete;
        Quiet& operator=(const Quiet&) = delete;

        /// The texts that have not been shown, oldest first.
        const QStringList& Kept() const { return m_kept; }

    private:
        friend class Operator;

        Operator& m_person;
        Quiet* m_outer;
        QStringList m_kept;
    };

protected:
    virtual void ShowMessage(const QString& text, Icon icon) = 0;
    virtual void ShowError(const ErrorEntry& error) = 0;
    /// Shows or takes away the hourglass; called at the first and the last `Busy` only.
    virtual void ShowBusy(bool busy) = 0;
    /// Seconds since any fixed moment.
    virtual double Seconds() const;

    /// The operator is waited for during the lifetime of the object: a box stands open, or a line is to be typed.
    class Waiting {
    public:
        explicit Waiting(Operator& person);
        ~Waiting();
        Waiting(const Waiting&) = delete;
        Waiting& operator=(const Waiting&) = delete;

    private:
        Operator& m_person;
    };

private:
    int m_busy = 0;
    int m_waiting = 0;
    double m_waitingSince = 0;
    double m_waited = 0; ///< seconds, without those of the wait under way
    QElapsedTimer m_clock;
    Quiet* m_quiet = nullptr; ///< the innermost one
};

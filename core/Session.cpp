#include "core/Session.h"

#include "core/modImport.h"
#include "sql/mod_ovTools.h"

/// Without case, as SYS_IMP has them.
UntranslatedCodes::Hashes UntranslatedCodes::HashesOf(const QString& code) {
    constexpr size_t otherSeed = 0x9e3779b9;
    const QString capitals = mod_ovTools::UpperChars(code);
    return {qHash(capitals, 1), qHash(capitals, otherSeed)};
}

bool UntranslatedCodes::Add(const QString& code) {
    const Hashes hashes = HashesOf(code);
    if (m_seen.contains(hashes)) {
        return false;
    }
    m_seen.insert(hashes);
    if (++m_count <= MostKept) {
        m_first.append(code);
    }
    return true;
}

void UntranslatedCodes::TakeBack(const QString& code) {
    m_seen.remove(HashesOf(code));
    if (m_count-- <= MostKept) {
        m_first.removeLast();
    }
}

void UntranslatedCodes::Begin() {
    m_first.clear();
    m_count = 0;
}

void UntranslatedCodes::Forget() {
    Begin();
    m_seen.clear();
}

Session::Session(Operator& person)
    : Person(person) {
    Errors.ClearError();
    Errors.Now = [this] { return Now(); };
    Errors.AskOperator = [this](const ErrorEntry& error) { return Person.ChooseOnError(error); };
    Errors.ReportToOperator = [this](const ErrorEntry& error) { Person.ReportError(error); };
    Quadrix.Errors = &Errors;
    Quadrix.Note = [this](const QString& note) { modImport::LogNote(*this, note); };
    UserManager.Connection = &Quadrix;
    Dialogs.ShowOpenFile = [this](const QString& title, const QString& filter) {
        return Person.OpenFile(title, filter);
    };
}

void Session::MonitorOnce(const QString& module, const QString& procedure) {
    try {
        throw;
    } catch (const Error& error) {
        const auto& told = Errors.Entries();
        if (std::any_of(told.cbegin(), told.cend(),
                        [&error](const ErrorEntry& entry) { return entry.message == error.Message(); })) {
            return;
        }
    } catch (...) { // anything else is told each time
    }
    Errors.Monitoring(module, procedure);
}

ovConnection& Session::SourceConnection() {
    if (!Source || !Source->State()) {
        throw ImportError(QStringLiteral("Nessuna origine dati aperta"));
    }
    return *Source;
}

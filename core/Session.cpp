#include "core/Session.h"

Session::Session(Operator& person)
    : Person(person) {
    Errors.ClearError();
    Errors.Now = [this] { return Now(); };
    Errors.AskOperator = [this](const ErrorEntry& error) { return Person.ChooseOnError(error); };
    Errors.ReportToOperator = [this](const ErrorEntry& error) { Person.ReportError(error); };
    Quadrix.Errors = &Errors;
    Config.Connection = &Quadrix;
    Config.Errors = &Errors;
    UserManager.Connection = &Quadrix;
    Records = {&Quadrix, &Config, &UserManager, &Errors};
}

ovConnection& Session::SourceConnection() {
    if (!Source || !Source->State()) {
        throw ImportError(QStringLiteral("Nessuna origine dati aperta"));
    }
    return *Source;
}

#include "sql/ovDialogs.h"

bool ovDialogs::ovShowOpen() {
    FileName = ShowOpenFile ? ShowOpenFile(DialogTitle, Filter) : QString();
    return !FileName.isEmpty();
}

std::optional<QString> ovDialogs::ShowInputBox(const QString& prompt, const QString& title,
                                               const QString& defaultText) const {
    return ShowInput ? ShowInput(prompt, title, defaultText) : std::nullopt;
}

#include "docs/manual/settingsInCode.h"

#include "docs/manual/codeText.h"

#include <QRegularExpression>

namespace manual {

namespace {

constexpr int None = -1;

/// A function that reads a setting or a list that tells one, and which of the arguments do so.
struct Reader {
    const char* call; ///< what stands before the arguments
    int section;      ///< `None`: the one below
    int key;
    int otherwise;
    const char* ownSection = nullptr;
};

constexpr Reader Readers[] = {
    {R"([cC]onfig\.(?:Get|Peek)AppConfig\()", 0, 1, 2},
    {R"(modMain::(?:GetAppConfig|GetWholeConfig|IsAppConfigOn)\()", 1, 2, 3},
    {R"(\bGetConfig\()", None, 0, 1, "CONFIG"},
    {R"(\bIsUpper\()", None, 1, 2, "CONFIG"},
    {R"((?<![:\w])Setting\()", None, 1, 2, "IMPORT"},
    {R"((?<![:\w])Peek\()", None, 1, None, "IMPORT"},
    {R"(\bfile\.Read\()", 0, 1, None},
    {R"(\bstoredPassword::Read\w*\()", None, 3, None},
    {R"(\bask\()", None, 1, None},
    {R"(\bfolder\()", None, 0, None},
    {R"(\bisOn\()", None, 0, None, "IMPORT"},
    {R"(\bHideWhenOn\()", None, 2, None, "IMPORT"},
    {R"(\bCompanyKey\{)", None, 0, None},
    {R"(\bGroup \w+\{)", None, 0, 1},
};

/// What the names of keys are given in, beside the calls: lists of them, and members of `SourceKeys`.
const QRegularExpression& Lists() {
    static const QRegularExpression lists(
        R"(\b\w*[kK]eys?\{|keys\.\w+ = |\.(?:setting|username|password) = |\bServer\("\w+", \{)"
        R"(|    QString (?:username|password|server|database|network|driver|encryption|authorities) = )");
    return lists;
}

bool IsKey(const QString& text) {
    static const QRegularExpression key(R"(^[A-Za-z][A-Za-z_]{2,}$|^_[A-Za-z]+$)");
    static const QSet<QString> sections{"IMPORT", "DATABASE", "CONFIG", "SEQUENCE", "AHR"};
    return key.match(text).hasMatch() && !sections.contains(text);
}

/// The piece of a key that is put together, or the key.
QString KeyOf(const QString& expression, const QString& code) {
    static const QRegularExpression together(
        R"re((?:^\w+ \+ QStringLiteral\("(_\w+)"\)$|^QStringLiteral\("(\w+_)"\) \+))re");
    const auto found = together.match(expression);
    return found.hasMatch() ? found.captured(found.lastCapturedIndex()) : TextOfExpression(expression, code);
}

void AddCalls(const Reader& reader, const QString& code, SettingUses& uses) {
    const QRegularExpression call(QString::fromLatin1(reader.call));
    for (auto found = call.globalMatch(code); found.hasNext();) {
        const QStringList arguments = ArgumentsAt(code, found.next().capturedEnd());
        const QString key = KeyOf(arguments.value(reader.key), code);
        if (!IsKey(key)) {
            continue;
        }
        SettingUse& use = uses[key];
        const QString section = reader.section == None ? QString::fromLatin1(reader.ownSection)
                                                       : TextOfExpression(arguments.value(reader.section), code);
        if (!section.isEmpty()) {
            use.sections.insert(section);
        }
        if (reader.otherwise != None) {
            const QString otherwise = arguments.value(reader.otherwise);
            use.defaults.insert(otherwise == u"{}" ? QString(QLatin1String("")) : TextOfExpression(otherwise, code));
        }
    }
}

void AddLists(const QString& code, SettingUses& uses) {
    static const QRegularExpression literal(R"re("(\w+)")re");
    static const QString beginning = QStringLiteral("prefix + ");
    for (auto found = Lists().globalMatch(code); found.hasNext();) {
        const qsizetype from = found.next().capturedEnd();
        const QString list = code.mid(from, code.indexOf(QRegularExpression("[;{}]"), from) - from);
        for (auto each = literal.globalMatch(list); each.hasNext();) {
            const QString key = each.next().captured(1);
            if (IsKey(key)) {
                uses[list.startsWith(beginning) && !key.startsWith(u'_') ? u'_' + key : key];
            }
        }
    }
}

} // namespace

void AddSettingsOf(const QString& code, SettingUses& uses) {
    for (const Reader& reader : Readers) {
        AddCalls(reader, code, uses);
    }
    AddLists(code, uses);
}

} // namespace manual

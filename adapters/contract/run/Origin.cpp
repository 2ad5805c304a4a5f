#include "adapters/contract/run/Origin.h"

#include <algorithm>

namespace contract {

namespace {
const QStringList Names{"cli", "art", "dis", "doc", "acq", "saldi", "piano", "disegni"};
Shown ShownOf(char mark) {
    switch (mark) {
    case 'Y':
        return Shown::Yes;
    case '-':
        return Shown::Keep;
    default:
        return Shown::No;
    }
}

} // namespace

ButtonRows Buttons(const char* marks, const std::vector<Caption>& captions) {
    ButtonRows rows;
    for (size_t button = 0; button < rows.size(); ++button) {
        rows[button].shown = ShownOf(marks[button]);
    }
    for (const Caption& caption : captions) {
        rows[static_cast<size_t>(caption.button)].caption = QString::fromUtf8(caption.text);
    }
    return rows;
}

Procedure OverSourceOf(const Origin& other, Procedure procedure) {
    procedure.readsOf = &other;
    return procedure;
}

const Origin* SourceOf(const Origin& origin, const Procedure& procedure) {
    if (!procedure.opensSource) {
        return nullptr;
    }
    return procedure.readsOf == nullptr ? &origin : procedure.readsOf;
}

const Origin* FirstSourceOf(const Origin& origin, const std::vector<const Procedure*>& procedures) {
    const auto first = std::find_if(procedures.begin(), procedures.end(),
                                    [&](const Procedure* each) { return SourceOf(origin, *each) != nullptr; });
    return first == procedures.end() ? nullptr : SourceOf(origin, **first);
}

std::vector<AnswerNeed> AnswersNeeded(const Origin& origin, const std::vector<const Procedure*>& procedures) {
    const Origin* open = FirstSourceOf(origin, procedures);
    std::vector<AnswerNeed> needed = open != nullptr ? open->source.asks : std::vector<AnswerNeed>();
    for (const Procedure* procedure : procedures) {
        if (const Origin* source = SourceOf(origin, *procedure); source != nullptr && source != open) {
            needed.insert(needed.end(), source->source.asks.begin(), source->source.asks.end());
            open = source;
        }
        needed.insert(needed.end(), procedure->asks.begin(), procedure->asks.end());
    }
    return needed;
}

std::vector<RowsToDelete> DeletedByReset(Session& session, const Procedure& procedure) {
    return procedure.asksReset ? RowsOf(session, procedure.empties) : std::vector<RowsToDelete>();
}

QString ButtonName(Button button) { return Names.at(static_cast<int>(button)); }

std::optional<Button> ButtonFromName(const QString& name) {
    const auto index = Names.indexOf(name.toLower());
    if (index < 0) {
        return std::nullopt;
    }
    return static_cast<Button>(index);
}

} // namespace contract

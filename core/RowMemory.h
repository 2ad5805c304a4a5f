#pragma once

#include <functional>
#include <utility>
#include <vector>

/// What source rows that are not committed yet have put into memory (codes given, links, translations, lines of the
/// log): it is forgotten when the rows are taken back, so that a row that is done again finds everything as it was.
class RowMemory {
public:
    /// Whether rows are under way that can be taken back.
    bool IsOpen() const { return m_open; }
    /// Rows follow that can be taken back.
    void Open() { m_open = true; }
    /// What is remembered stays: nothing of it can be taken back any more.
    void Keep() {
        m_forget.clear();
        m_open = false;
    }

    /// Has `forget` called when what is written just now is taken back, the latest first; never, where it cannot be.
    void WhenTakenBack(std::function<void()> forget) {
        if (m_open) {
            m_forget.push_back(std::move(forget));
        }
    }
    /// Gives a variable, which outlives the run, its present value back when what follows is taken back.
    template<class Variable>
    void Restores(Variable& variable) {
        if (m_open) {
            m_forget.push_back([&variable, before = variable] { variable = before; });
        }
    }

    /// A point to go back to.
    size_t Mark() const { return m_forget.size(); }
    /// Forgets what has been remembered since a mark.
    void TakeBack(size_t mark = 0) {
        while (m_forget.size() > mark) {
            const std::function<void()> forget = std::move(m_forget.back());
            m_forget.pop_back();
            forget();
        }
    }

private:
    std::vector<std::function<void()>> m_forget;
    bool m_open = false;
};

// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
//
// Undo and redo of everything that changes a case, without limit.
#pragma once

#include "base/TextDiff.h"
#include "casefile/CaseFile.h"

#include <cstdint>
#include <string>
#include <vector>

class CRuvData;

namespace casefile
{

/// ReplaceCase, after which the open masks are told what of which vehicle is another. What they write into the case in
/// answer does not stand: the case holds `content` then.
void ReplaceCaseAndTell(CRuvData& data, CRuvData&& content);

/// Keeps the case as the text of its file and each step as the difference of two such texts, so that a step takes back
/// exactly what the file would show, and takes room in proportion to what it changed.
class CaseHistory
{
  public:
    /// `data` outlives the history.
    explicit CaseHistory(CRuvData& data);

    /// Forgets all steps and begins with the case as it stands.
    void Reset();

    /// Makes what changed since the last call a step; false when nothing did. Steps that were undone are forgotten
    /// then. A case that no file can hold is left alone, see Problem().
    bool Commit(std::string label);

    bool CanUndo() const { return m_done > 0; }
    bool CanRedo() const { return m_done < m_steps.size(); }
    const std::string& UndoLabel() const; ///< empty when there is nothing to undo
    const std::string& RedoLabel() const;
    /// Take back or repeat a step in the case itself and tell its open masks what changed. What was not committed yet
    /// becomes a step of its own first. False when there is nothing to undo or redo.
    bool Undo();
    bool Redo();
    /// Takes back what was not committed, in the same way; it cannot be repeated.
    void Revert() { Restore(m_text); }

    /// The case as a file would hold it, as of the last step.
    const std::string& Text() const { return m_text; }
    /// A number that names the state: the same again after Undo and Redo, never the same for another state.
    std::uint64_t State() const { return m_done == 0 ? m_first : m_steps[m_done - 1].state; }
    /// Why the last Commit could not take the case.
    const CaseResult& Problem() const { return m_problem; }
    std::size_t StepCount() const { return m_steps.size(); }
    /// Bytes that the steps take.
    std::size_t Size() const { return m_size; }

  private:
    struct Step {
        std::string label;
        base::TextDiff diff;
        std::uint64_t state; ///< after the step

        std::size_t Size() const { return sizeof(Step) + label.capacity() + diff.Size(); }
    };
    void Restore(std::string text);
    void ForgetUndone();

    CRuvData& m_data;
    std::string m_text;
    std::vector<Step> m_steps;
    std::size_t m_size = 0;
    std::size_t m_done = 0; ///< steps that are not undone
    std::uint64_t m_first = 0;
    std::uint64_t m_lastState = 0;
    CaseResult m_problem;
};

} // namespace casefile

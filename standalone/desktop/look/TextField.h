// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QLineEdit>

namespace desktop
{

/// A line to type into that takes only the keys it has a use for: undo and redo belong to the case unless something
/// typed can be taken back, and Alt with a letter types nothing.
class TextField : public QLineEdit
{
  public:
    using QLineEdit::QLineEdit;

  protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
};

} // namespace desktop

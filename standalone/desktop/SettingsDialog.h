// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "desktop/look/Preferences.h"

#include <QDialog>

#include <vector>

class CRuvCfg;
struct CKartenCfg;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace desktop
{

/// Edits RuvCfg, the unit system and the look. Nothing changes before "OK".
class SettingsDialog : public QDialog
{
    Q_OBJECT

  public:
    /// `unitsLocked` while masks are open: their unit labels are written when they open.
    SettingsDialog(const Preferences& preferences, bool unitsLocked, QWidget* parent);

    /// Takes what was chosen into RuvCfg, the unit system and `preferences`.
    void Apply(Preferences& preferences) const;

  protected:
    void accept() override;

  private:
    QWidget* MakeCalculation();
    QWidget* MakeLook(bool unitsLocked);
    QWidget* MakeMap();
    QWidget* MakeColors();
    CKartenCfg Map() const;
    bool CheckMap();
    QPushButton* ColorButton();
    void ShowColors(const CRuvCfg& cfg);
    static QColor ColorOf(const QPushButton& button);
    QColor Used(const QPushButton& button, const QColor& color) const;
    void SetColor(QPushButton& button, const QColor& color);
    bool Check(QLineEdit& field, QLabel& reason);
    static void Refuse(QLineEdit& field, QLabel& reason, const QString& why);

    Preferences m_before;
    QCheckBox* m_transfer = nullptr;
    QLineEdit* m_reaction = nullptr;
    QLineEdit* m_threshold = nullptr;
    QLabel* m_reactionReason = nullptr;
    QLabel* m_thresholdReason = nullptr;
    QComboBox* m_units = nullptr;
    QComboBox* m_decimalSign = nullptr;
    QComboBox* m_scheme = nullptr;
    QComboBox* m_size = nullptr;
    QCheckBox* m_vehicleColors = nullptr;
    QComboBox* m_mapSource = nullptr;
    QLineEdit* m_mapFile = nullptr;
    QLineEdit* m_mapServer = nullptr;
    QLineEdit* m_mapAttribution = nullptr;
    QLabel* m_mapReason = nullptr;
    std::vector<QPushButton*> m_colors; ///< in the order of the settings they stand for
};

} // namespace desktop

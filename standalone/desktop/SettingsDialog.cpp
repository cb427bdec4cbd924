// SPDX-FileCopyrightText: The RuvMod authors
// SPDX-License-Identifier: Apache-2.0
#include "desktop/SettingsDialog.h"

#include "base/NumberText.h"
#include "desktop/look/Style.h"
#include "host/RuvCfg.h"
#include "host/Units.h"
#include "krn/Tiles.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

#include <array>
#include <iterator>
#include <optional>
#include <utility>

namespace desktop
{
namespace
{

constexpr double kLongestTime = 100.0; // s, as the settings file and the masks allow
constexpr const char* kColorProperty = "color";
constexpr std::array kSizes{0.85, 1.0, 1.15, 1.3, 1.5, 1.75, 2.0};

struct Color {
    const char* label;
    COLORREF& (*field)(CRuvCfg&);
};
constexpr Color kFieldColors[] = {
    {"Ein&gabefelder:", [](CRuvCfg& cfg) -> COLORREF& { return cfg.editColors.background; }},
    {"Erge&bnisfelder:", [](CRuvCfg& cfg) -> COLORREF& { return cfg.resultColors.background; }},
    {"Diagra&mme:", [](CRuvCfg& cfg) -> COLORREF& { return cfg.diagramBackground; }},
    {"Diagrammf&läche:", [](CRuvCfg& cfg) -> COLORREF& { return cfg.diagramPlot; }},
};
constexpr Color kBarrierColors[] = {
    {"Bremsung, Dettinger:", [](CRuvCfg& cfg) -> COLORREF& { return cfg.schranken.bremsungDettinger; }},
    {"Global (Kühnel), Rau:", [](CRuvCfg& cfg) -> COLORREF& { return cfg.schranken.globalRau; }},
    {"Verzögerung (Kühnel):", [](CRuvCfg& cfg) -> COLORREF& { return cfg.schranken.kuehnelVerzoegerung; }},
    {"Ritter, Krieg:", [](CRuvCfg& cfg) -> COLORREF& { return cfg.schranken.ritterKrieg; }},
    {"Frontscheibe:", [](CRuvCfg& cfg) -> COLORREF& { return cfg.schranken.frontscheibe; }},
    {"Scheinwerfer, Hauptfeld:", [](CRuvCfg& cfg) -> COLORREF& { return cfg.schranken.scheinwerferHaupt; }},
    {"Scheinwerfer, Gesamtfeld:", [](CRuvCfg& cfg) -> COLORREF& { return cfg.schranken.scheinwerferGesamt; }},
    {"Abwicklung:", [](CRuvCfg& cfg) -> COLORREF& { return cfg.schranken.abwicklung; }},
    {"Geschwindigkeit:", [](CRuvCfg& cfg) -> COLORREF& { return cfg.schranken.geschwindigkeit; }},
};

/// All of them in the order of their buttons.
std::vector<Color> AllColors()
{
    std::vector<Color> all(std::begin(kFieldColors), std::end(kFieldColors));
    all.insert(all.end(), std::begin(kBarrierColors), std::end(kBarrierColors));
    return all;
}

QString Number(double value)
{
    return QString::fromStdString(base::FormatNumber(value));
}

/// The time in the field, or nothing when it holds none.
std::optional<double> TimeIn(const QLineEdit& field)
{
    const auto value = base::ParseNumber(field.text().toStdString());
    return value && *value >= 0.0 && *value <= kLongestTime ? value : std::nullopt;
}

QWidget* WithUnit(QLineEdit* field, QLabel* reason)
{
    auto* holder = new QWidget;
    auto* column = new QVBoxLayout(holder);
    auto* row = new QHBoxLayout;
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(2);
    field->setAlignment(Qt::AlignRight);
    field->setFixedWidth(8 * QFontMetrics(TextFont()).averageCharWidth() + 2 * Spacing());
    row->addWidget(field);
    row->addWidget(new QLabel(QStringLiteral("s")));
    row->addStretch();
    column->addLayout(row);
    reason->setWordWrap(true);
    reason->hide();
    column->addWidget(reason);
    return holder;
}

} // namespace

SettingsDialog::SettingsDialog(const Preferences& preferences, bool unitsLocked, QWidget* parent)
    : QDialog(parent), m_before(preferences)
{
    setWindowTitle(QStringLiteral("Einstellungen"));
    auto* layout = new QVBoxLayout(this);
    layout->setSpacing(2 * Spacing());
    auto* columns = new QHBoxLayout;
    auto* left = new QVBoxLayout;
    columns->setSpacing(2 * Spacing());
    left->setSpacing(2 * Spacing());
    left->addWidget(MakeCalculation());
    left->addWidget(MakeLook(unitsLocked));
    left->addWidget(MakeMap());
    left->addStretch();
    columns->addLayout(left);
    columns->addWidget(MakeColors());
    layout->addLayout(columns);
    auto* buttons = new QDialogButtonBox;
    auto* ok = buttons->addButton(QStringLiteral("&OK"), QDialogButtonBox::AcceptRole);
    buttons->addButton(QStringLiteral("&Abbrechen"), QDialogButtonBox::RejectRole);
    ok->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &SettingsDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &SettingsDialog::reject);
    layout->addWidget(buttons);
}

QWidget* SettingsDialog::MakeCalculation()
{
    auto* group = new QGroupBox(QStringLiteral("Berechnung"));
    auto* form = new QFormLayout(group);
    m_transfer = new QCheckBox(QStringLiteral("&Daten in den Fall übertragen"));
    m_transfer->setChecked(RuvCfg.transferData);
    m_transfer->setToolTip(QStringLiteral("Masken schreiben ihr Ergebnis in die Weg-Zeit-Daten eines Fahrzeugs."));
    m_reaction = new QLineEdit(Number(RuvCfg.defaultReactionTime));
    m_threshold = new QLineEdit(Number(RuvCfg.defaultThresholdTime));
    m_reactionReason = new QLabel;
    m_thresholdReason = new QLabel;
    form->addRow(m_transfer);
    auto* reaction = new QLabel(QStringLiteral("&Reaktionsdauer:"));
    auto* threshold = new QLabel(QStringLiteral("&Schwelldauer:"));
    reaction->setBuddy(m_reaction);
    threshold->setBuddy(m_threshold);
    form->addRow(reaction, WithUnit(m_reaction, m_reactionReason));
    form->addRow(threshold, WithUnit(m_threshold, m_thresholdReason));
    for (auto [field, reason] : {std::pair(m_reaction, m_reactionReason), std::pair(m_threshold, m_thresholdReason)})
        connect(field, &QLineEdit::textEdited, this, [field = field, reason = reason] {
            field->setProperty(kRefusedProperty, false);
            reason->hide();
        });
    return group;
}

QWidget* SettingsDialog::MakeLook(bool unitsLocked)
{
    auto* group = new QGroupBox(QStringLiteral("Anzeige"));
    auto* form = new QFormLayout(group);
    m_units = new QComboBox;
    m_units->addItems({QStringLiteral("metrisch (km/h, m)"), QStringLiteral("angloamerikanisch (mph, ft)")});
    m_units->setCurrentIndex(UnitsSystemConfiguration::GetInstance().System() == UnitsSystem::imperial ? 1 : 0);
    m_units->setEnabled(!unitsLocked);
    m_decimalSign = new QComboBox;
    m_decimalSign->addItems({QStringLiteral("deutsch (1,5)"), QStringLiteral("englisch (1.5)")});
    m_decimalSign->setCurrentIndex(RuvCfg.decimalPoint ? 1 : 0);
    m_scheme = new QComboBox;
    m_scheme->addItems({QStringLiteral("hell"), QStringLiteral("dunkel")});
    m_scheme->setCurrentIndex(m_before.scheme == Scheme::dark ? 1 : 0);
    m_size = new QComboBox;
    int nearest = 0;
    for (const double size : kSizes) {
        m_size->addItem(QStringLiteral("%1 %").arg(qRound(100.0 * size)), size);
        if (qAbs(size - m_before.fontScale) < qAbs(m_size->itemData(nearest).toDouble() - m_before.fontScale))
            nearest = m_size->count() - 1;
    }
    m_size->setCurrentIndex(nearest);
    form->addRow(QStringLiteral("&Einheiten:"), m_units);
    if (unitsLocked) {
        auto* hint = new QLabel(QStringLiteral("Die Einheiten lassen sich ändern, wenn keine Maske offen ist."));
        hint->setWordWrap(true);
        hint->setEnabled(false);
        form->addRow(hint);
    }
    form->addRow(QStringLiteral("&Zahlen:"), m_decimalSign);
    form->addRow(QStringLiteral("&Farbschema:"), m_scheme);
    form->addRow(QStringLiteral("S&chriftgröße:"), m_size);
    return group;
}

QWidget* SettingsDialog::MakeMap()
{
    auto* group = new QGroupBox(QStringLiteral("Karte unter Spuren"));
    auto* form = new QFormLayout(group);
    m_mapSource = new QComboBox;
    m_mapSource->setObjectName(QStringLiteral("mapSource"));
    m_mapSource->addItems({QStringLiteral("keine"), QStringLiteral("Kartendatei (MBTiles)"),
                           QStringLiteral("Kartenserver im Netz")}); // in the order of CKartenCfg::Quelle
    m_mapSource->setCurrentIndex(static_cast<int>(RuvCfg.karte.quelle));
    const auto field = [this](const char* name, const std::string& text) {
        auto* line = new QLineEdit(QString::fromStdString(text));
        line->setObjectName(QString::fromLatin1(name));
        connect(line, &QLineEdit::textChanged, this, [this, line] {
            line->setProperty(kRefusedProperty, false);
            m_mapReason->hide();
        });
        return line;
    };
    m_mapReason = new QLabel;
    m_mapReason->setObjectName(QStringLiteral("mapReason"));
    m_mapReason->setWordWrap(true);
    m_mapReason->hide();
    m_mapFile = field("mapFile", RuvCfg.karte.datei);
    m_mapServer = field("mapServer", RuvCfg.karte.server);
    m_mapAttribution = field("mapAttribution", RuvCfg.karte.herkunft);
    m_mapServer->setPlaceholderText(QStringLiteral("https://…/{z}/{x}/{y}.png"));
    m_mapServer->setToolTip(
        QStringLiteral("Adresse einer Kachel: {z} steht für die Zoomstufe, {x} für die Spalte, {y} für "
                       "die Zeile. Nur wenn „Kartenserver im Netz“ gewählt ist, wird er gefragt; er "
                       "erfährt dabei, welche Gegend gezeigt wird."));
    m_mapAttribution->setPlaceholderText(QStringLiteral("steht auf der Karte"));
    auto* choose = new QPushButton(QStringLiteral("…"));
    choose->setAutoDefault(false);
    choose->setFixedWidth(choose->fontMetrics().averageCharWidth() * 4 + 2 * Spacing());
    choose->setToolTip(QStringLiteral("Kartendatei wählen"));
    connect(choose, &QPushButton::clicked, this, [this] {
        const QString path =
            QFileDialog::getOpenFileName(this, QStringLiteral("Kartendatei wählen"), m_mapFile->text(),
                                         QStringLiteral("Kartendateien (*.mbtiles);;Alle Dateien (*)"));
        if (!path.isEmpty())
            m_mapFile->setText(path);
    });
    auto* file = new QWidget;
    auto* row = new QHBoxLayout(file);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(m_mapFile);
    row->addWidget(choose);
    form->addRow(QStringLiteral("&Quelle:"), m_mapSource);
    auto* fileLabel = new QLabel(QStringLiteral("Kar&tendatei:"));
    fileLabel->setBuddy(m_mapFile);
    form->addRow(fileLabel, file);
    form->addRow(QStringLiteral("&Internetadresse:"), m_mapServer);
    form->addRow(QStringLiteral("&Herkunft:"), m_mapAttribution);
    form->addRow(m_mapReason);
    const auto enable = [=, this] {
        file->setEnabled(m_mapSource->currentIndex() == 1);
        m_mapServer->setEnabled(m_mapSource->currentIndex() == 2);
        m_mapAttribution->setEnabled(m_mapSource->currentIndex() == 2);
        m_mapReason->hide();
    };
    connect(m_mapSource, &QComboBox::currentIndexChanged, this, enable);
    enable();
    return group;
}

CKartenCfg SettingsDialog::Map() const
{
    CKartenCfg map;
    map.quelle = static_cast<CKartenCfg::Quelle>(m_mapSource->currentIndex());
    map.datei = m_mapFile->text().toStdString();
    map.server = m_mapServer->text().trimmed().toStdString();
    map.herkunft = m_mapAttribution->text().trimmed().toStdString();
    // What is not used and could not be is not kept: the settings file would be refused for it.
    if (map.quelle != CKartenCfg::Quelle::server && !krn::TileAddressProblem(map.server).empty())
        map.server.clear();
    return map;
}

bool SettingsDialog::CheckMap()
{
    const CKartenCfg map = Map();
    const std::string problem = krn::TilesProblem(map);
    if (problem.empty())
        return true;
    QLineEdit& field = map.quelle == CKartenCfg::Quelle::datei ? *m_mapFile : *m_mapServer;
    Refuse(field, *m_mapReason, QString::fromStdString(problem));
    return false;
}

QWidget* SettingsDialog::MakeColors()
{
    auto* group = new QGroupBox(QStringLiteral("Farben"));
    auto* form = new QFormLayout(group);
    m_vehicleColors = new QCheckBox(QStringLiteral("Felder zeigen die Farbe ihres Fahrze&ugs"));
    m_vehicleColors->setChecked(RuvCfg.useVehicleColors);
    form->addRow(m_vehicleColors);
    const auto add = [&](const Color& color) {
        auto* button = ColorButton();
        form->addRow(QString::fromUtf8(color.label), button);
        m_colors.push_back(button);
        SetColor(*button, FromColorRef(color.field(RuvCfg)));
    };
    for (const Color& color : kFieldColors)
        add(color);
    auto* barriers = new QLabel(QStringLiteral("Kurven des Schrankenverfahrens"));
    barriers->setFont(TextFont(1.0, true));
    barriers->setContentsMargins(0, Spacing(), 0, 0);
    form->addRow(barriers);
    for (const Color& color : kBarrierColors)
        add(color);
    auto* standard = new QPushButton(QStringLiteral("&Voreingestellte Farben"));
    standard->setAutoDefault(false);
    connect(standard, &QPushButton::clicked, this, [this] { ShowColors(CRuvCfg()); });
    form->addRow(standard);
    return group;
}

void SettingsDialog::ShowColors(const CRuvCfg& cfg)
{
    CRuvCfg shown = cfg;
    const std::vector<Color> colors = AllColors();
    for (std::size_t i = 0; i < colors.size(); ++i)
        SetColor(*m_colors[i], FromColorRef(colors[i].field(shown)));
}

QPushButton* SettingsDialog::ColorButton()
{
    auto* button = new QPushButton;
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, [this, button] {
        const QColor chosen = QColorDialog::getColor(ColorOf(*button), this, QStringLiteral("Farbe wählen"));
        if (chosen.isValid())
            SetColor(*button, chosen);
    });
    return button;
}

QColor SettingsDialog::ColorOf(const QPushButton& button)
{
    return button.property(kColorProperty).value<QColor>();
}

/// The colour that the screen has for it in the scheme in force; a ground of fields left as it comes is the scheme's.
QColor SettingsDialog::Used(const QPushButton& button, const QColor& color) const
{
    CRuvCfg standard;
    for (std::size_t i = 0; i < m_colors.size() && i < std::size(kFieldColors); ++i)
        if (m_colors[i] == &button && i < 2 && ToColorRef(color) == kFieldColors[i].field(standard))
            return i == 0 ? Colors().field : Colors().result;
    return OnScreen(ToColorRef(color));
}

void SettingsDialog::SetColor(QPushButton& button, const QColor& color)
{
    button.setProperty(kColorProperty, color);
    QPixmap swatch(32, 16);
    swatch.fill(Colors().border);
    QPainter(&swatch).fillRect(swatch.rect().adjusted(1, 1, -1, -1), Used(button, color));
    button.setIcon(QIcon(swatch));
    button.setIconSize(swatch.size());
    button.setText(QStringLiteral(" ") + color.name());
}

bool SettingsDialog::Check(QLineEdit& field, QLabel& reason)
{
    if (TimeIn(field))
        return true;
    Refuse(field, reason,
           QStringLiteral("„%1“ ist keine Zeit von 0 bis %2 s.").arg(field.text(), Number(kLongestTime)));
    return false;
}

void SettingsDialog::Refuse(QLineEdit& field, QLabel& reason, const QString& why)
{
    field.setProperty(kRefusedProperty, true);
    field.update();
    QPalette colors = reason.palette();
    colors.setColor(QPalette::WindowText, Colors().danger);
    reason.setPalette(colors);
    reason.setText(why);
    reason.show();
    field.setFocus();
    field.selectAll();
}

void SettingsDialog::accept()
{
    if (Check(*m_reaction, *m_reactionReason) && Check(*m_threshold, *m_thresholdReason) && CheckMap())
        QDialog::accept();
}

void SettingsDialog::Apply(Preferences& preferences) const
{
    RuvCfg.transferData = m_transfer->isChecked();
    RuvCfg.defaultReactionTime = TimeIn(*m_reaction).value_or(RuvCfg.defaultReactionTime);
    RuvCfg.defaultThresholdTime = TimeIn(*m_threshold).value_or(RuvCfg.defaultThresholdTime);
    RuvCfg.useVehicleColors = m_vehicleColors->isChecked();
    RuvCfg.decimalPoint = m_decimalSign->currentIndex() == 1;
    RuvCfg.karte = Map();
    const std::vector<Color> colors = AllColors();
    for (std::size_t i = 0; i < colors.size(); ++i)
        colors[i].field(RuvCfg) = ToColorRef(ColorOf(*m_colors[i]));
    UnitsSystemConfiguration::GetInstance().SetSystem(m_units->currentIndex() == 1 ? UnitsSystem::imperial
                                                                                   : UnitsSystem::metric);
    preferences.scheme = m_scheme->currentIndex() == 1 ? Scheme::dark : Scheme::light;
    preferences.fontScale = m_size->currentData().toDouble();
}

} // namespace desktop

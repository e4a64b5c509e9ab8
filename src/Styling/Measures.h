#pragma once

#include "Styling/Tokens.h"

#include <QFont>
#include <QObject>
#include <QVariantList>
#include <qqmlregistration.h>

// The measures of Tokens as the views read them: Tokens.space.md, Tokens.size.trackRow, Tokens.font.body.
namespace zelk {

namespace Tokens {

// How much larger than usual the user wants text.
inline constexpr double leastTextScale = 1.0;
inline constexpr double mostTextScale = 1.5;

// What a measure of text, or of what holds text, comes to at that scale. Logical pixels.
constexpr int scaled(int measure, double textScale) {
    return qRound(measure * textScale);
}

} // namespace Tokens

namespace Tokens::Size { // logical pixels
inline constexpr int trackRow = 34;
inline constexpr int columnHead = 28;
inline constexpr int tableTail = 12; // after the last row of each table
inline constexpr int groupCard = 80;
inline constexpr int sectionHead = 36;
inline constexpr int playlistRow = 42;
inline constexpr int folderRow = 30;
inline constexpr int depthIndent = 16;
} // namespace Tokens::Size

class SpaceScale : public QObject {
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(int xxs MEMBER xxs CONSTANT)
    Q_PROPERTY(int xs MEMBER xs CONSTANT)
    Q_PROPERTY(int sm MEMBER sm CONSTANT)
    Q_PROPERTY(int md MEMBER md CONSTANT)
    Q_PROPERTY(int lg MEMBER lg CONSTANT)
    Q_PROPERTY(int xl MEMBER xl CONSTANT)
    Q_PROPERTY(int xxl MEMBER xxl CONSTANT)

public:
    const int xxs = Tokens::Space::xxs;
    const int xs = Tokens::Space::xs;
    const int sm = Tokens::Space::sm;
    const int md = Tokens::Space::md;
    const int lg = Tokens::Space::lg;
    const int xl = Tokens::Space::xl;
    const int xxl = Tokens::Space::xxl;
};

class RadiusScale : public QObject {
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(int chip MEMBER chip CONSTANT)
    Q_PROPERTY(int control MEMBER control CONSTANT)
    Q_PROPERTY(int card MEMBER card CONSTANT)
    Q_PROPERTY(int panel MEMBER panel CONSTANT)

public:
    const int chip = Tokens::Radius::chip;
    const int control = Tokens::Radius::control;
    const int card = Tokens::Radius::card;
    const int panel = Tokens::Radius::panel;
};

class ArtScale : public QObject {
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(int row MEMBER row CONSTANT)
    Q_PROPERTY(int sidebar MEMBER sidebar CONSTANT)
    Q_PROPERTY(int header MEMBER header CONSTANT)
    Q_PROPERTY(int inspector MEMBER inspector CONSTANT)
    Q_PROPERTY(double placeholderShare MEMBER placeholderShare CONSTANT)
    Q_PROPERTY(double logoShare MEMBER logoShare CONSTANT)
    Q_PROPERTY(double logoRadiusShare MEMBER logoRadiusShare CONSTANT)
    Q_PROPERTY(double chipShare MEMBER chipShare CONSTANT)
    Q_PROPERTY(double fallbackShare MEMBER fallbackShare CONSTANT)

public:
    const int row = Tokens::Art::row;
    const int sidebar = Tokens::Art::sidebar;
    const int header = Tokens::Art::header;
    const int inspector = Tokens::Art::inspector;
    const double placeholderShare = 0.42; // the symbol's part of a placeholder's edge
    const double logoShare = 0.52;        // the glyph's part of a logo's tile
    const double logoRadiusShare = 0.28;  // the corner's part of a logo's tile
    const double chipShare = 0.58;        // the glyph's part of a service's tile
    const double fallbackShare = 0.8;     // the part of a glyph's frame that a symbol in its stead takes
};

// Sizes at one scale of text: text() marks those that grow with it.
class SizeScale : public QObject {
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(int windowWidth MEMBER windowWidth CONSTANT)
    Q_PROPERTY(int windowHeight MEMBER windowHeight CONSTANT)
    Q_PROPERTY(int windowMinimumWidth MEMBER windowMinimumWidth CONSTANT)
    Q_PROPERTY(int windowMinimumHeight MEMBER windowMinimumHeight CONSTANT)
    Q_PROPERTY(int menuBar MEMBER menuBar CONSTANT)
    Q_PROPERTY(int toolbar MEMBER toolbar CONSTANT)
    Q_PROPERTY(int summaryBar MEMBER summaryBar CONSTANT)
    Q_PROPERTY(int summaryLine MEMBER summaryLine CONSTANT)
    Q_PROPERTY(int strip MEMBER strip CONSTANT)
    Q_PROPERTY(int fileRow MEMBER fileRow CONSTANT)
    Q_PROPERTY(int sidebarMinimum MEMBER sidebarMinimum CONSTANT)
    Q_PROPERTY(int sidebarIdeal MEMBER sidebarIdeal CONSTANT)
    Q_PROPERTY(int sidebarMaximum MEMBER sidebarMaximum CONSTANT)
    Q_PROPERTY(int inspectorMinimum MEMBER inspectorMinimum CONSTANT)
    Q_PROPERTY(int inspectorIdeal MEMBER inspectorIdeal CONSTANT)
    Q_PROPERTY(int inspectorMaximum MEMBER inspectorMaximum CONSTANT)
    Q_PROPERTY(int detailRoom MEMBER detailRoom CONSTANT)
    Q_PROPERTY(int bannerMaximum MEMBER bannerMaximum CONSTANT)
    Q_PROPERTY(int readingWidth MEMBER readingWidth CONSTANT)
    Q_PROPERTY(int dialogWidth MEMBER dialogWidth CONSTANT)
    Q_PROPERTY(int wideDialogWidth MEMBER wideDialogWidth CONSTANT)
    Q_PROPERTY(int dialogSymbol MEMBER dialogSymbol CONSTANT)
    Q_PROPERTY(int notesMaximum MEMBER notesMaximum CONSTANT)
    Q_PROPERTY(int trackRow MEMBER trackRow CONSTANT)
    Q_PROPERTY(int columnHead MEMBER columnHead CONSTANT)
    Q_PROPERTY(int groupCard MEMBER groupCard CONSTANT)
    Q_PROPERTY(int sectionHead MEMBER sectionHead CONSTANT)
    Q_PROPERTY(int playlistRow MEMBER playlistRow CONSTANT)
    Q_PROPERTY(int folderRow MEMBER folderRow CONSTANT)
    Q_PROPERTY(int depthIndent MEMBER depthIndent CONSTANT)
    Q_PROPERTY(int button MEMBER button CONSTANT)
    Q_PROPERTY(int smallButton MEMBER smallButton CONSTANT)
    Q_PROPERTY(int field MEMBER field CONSTANT)
    Q_PROPERTY(int menuEntry MEMBER menuEntry CONSTANT)
    Q_PROPERTY(int menuWidth MEMBER menuWidth CONSTANT)
    Q_PROPERTY(int switchWidth MEMBER switchWidth CONSTANT)
    Q_PROPERTY(int switchHeight MEMBER switchHeight CONSTANT)
    Q_PROPERTY(int switchKnob MEMBER switchKnob CONSTANT)
    Q_PROPERTY(int switchInset MEMBER switchInset CONSTANT)
    Q_PROPERTY(int check MEMBER check CONSTANT)
    Q_PROPERTY(int stepperWidth MEMBER stepperWidth CONSTANT)
    Q_PROPERTY(int stepperHeight MEMBER stepperHeight CONSTANT)
    Q_PROPERTY(int popUp MEMBER popUp CONSTANT)
    Q_PROPERTY(int formRow MEMBER formRow CONSTANT)
    Q_PROPERTY(int formRowOfTwoLines MEMBER formRowOfTwoLines CONSTANT)
    Q_PROPERTY(int settingsWidth MEMBER settingsWidth CONSTANT)
    Q_PROPERTY(int settingsHeight MEMBER settingsHeight CONSTANT)
    Q_PROPERTY(int settingsMinimumHeight MEMBER settingsMinimumHeight CONSTANT)
    Q_PROPERTY(int tabRow MEMBER tabRow CONSTANT)
    Q_PROPERTY(int tabWidth MEMBER tabWidth CONSTANT)
    Q_PROPERTY(int tabHeight MEMBER tabHeight CONSTANT)
    Q_PROPERTY(int tabSymbol MEMBER tabSymbol CONSTANT)
    Q_PROPERTY(int formSide MEMBER formSide CONSTANT)
    Q_PROPERTY(int sourceList MEMBER sourceList CONSTANT)
    Q_PROPERTY(int bar MEMBER bar CONSTANT)
    Q_PROPERTY(int meter MEMBER meter CONSTANT)
    Q_PROPERTY(int candidate MEMBER candidate CONSTANT)
    Q_PROPERTY(double pickedStroke MEMBER pickedStroke CONSTANT)
    Q_PROPERTY(int rowBar MEMBER rowBar CONSTANT)
    Q_PROPERTY(int logo MEMBER logo CONSTANT)
    Q_PROPERTY(int spinner MEMBER spinner CONSTANT)
    Q_PROPERTY(int largeSpinner MEMBER largeSpinner CONSTANT)
    Q_PROPERTY(int symbol MEMBER symbol CONSTANT)
    Q_PROPERTY(int smallSymbol MEMBER smallSymbol CONSTANT)
    Q_PROPERTY(int badgeSymbol MEMBER badgeSymbol CONSTANT)
    Q_PROPERTY(int badgeInset MEMBER badgeInset CONSTANT)
    Q_PROPERTY(int chevron MEMBER chevron CONSTANT)
    Q_PROPERTY(int folderSymbol MEMBER folderSymbol CONSTANT)
    Q_PROPERTY(int bannerSymbol MEMBER bannerSymbol CONSTANT)
    Q_PROPERTY(int emptySymbol MEMBER emptySymbol CONSTANT)
    Q_PROPERTY(int smallEmptySymbol MEMBER smallEmptySymbol CONSTANT)
    Q_PROPERTY(int sheetWidth MEMBER sheetWidth CONSTANT)
    Q_PROPERTY(int sheetHeight MEMBER sheetHeight CONSTANT)
    Q_PROPERTY(int setupHeader MEMBER setupHeader CONSTANT)
    Q_PROPERTY(int setupHeaderTall MEMBER setupHeaderTall CONSTANT)
    Q_PROPERTY(int setupFooter MEMBER setupFooter CONSTANT)
    Q_PROPERTY(int setupSymbol MEMBER setupSymbol CONSTANT)
    Q_PROPERTY(int footerButton MEMBER footerButton CONSTANT)
    Q_PROPERTY(int stepDot MEMBER stepDot CONSTANT)
    Q_PROPERTY(int currentStepDot MEMBER currentStepDot CONSTANT)
    Q_PROPERTY(int hero MEMBER hero CONSTANT)
    Q_PROPERTY(int heroCore MEMBER heroCore CONSTANT)
    Q_PROPERTY(int heroSymbol MEMBER heroSymbol CONSTANT)
    Q_PROPERTY(int seal MEMBER seal CONSTANT)
    Q_PROPERTY(int welcomeWidth MEMBER welcomeWidth CONSTANT)
    Q_PROPERTY(int recapWidth MEMBER recapWidth CONSTANT)
    Q_PROPERTY(int recapRow MEMBER recapRow CONSTANT)
    Q_PROPERTY(int labelSymbol MEMBER labelSymbol CONSTANT)
    Q_PROPERTY(int toolMark MEMBER toolMark CONSTANT)
    Q_PROPERTY(int toolSymbol MEMBER toolSymbol CONSTANT)
    Q_PROPERTY(int toolBar MEMBER toolBar CONSTANT)
    Q_PROPERTY(int serviceIcon MEMBER serviceIcon CONSTANT)
    Q_PROPERTY(int sourceIcon MEMBER sourceIcon CONSTANT)
    Q_PROPERTY(double heroAtRest MEMBER heroAtRest CONSTANT)
    Q_PROPERTY(double sealAtRest MEMBER sealAtRest CONSTANT)
    Q_PROPERTY(int hairline MEMBER hairline CONSTANT)
    Q_PROPERTY(int focusRing MEMBER focusRing CONSTANT)
    Q_PROPERTY(int focusGap MEMBER focusGap CONSTANT)
    Q_PROPERTY(int scrollBar MEMBER scrollBar CONSTANT)
    Q_PROPERTY(int scrollBarHover MEMBER scrollBarHover CONSTANT)
    Q_PROPERTY(int shadowBlur MEMBER shadowBlur CONSTANT)
    Q_PROPERTY(int shadowOffset MEMBER shadowOffset CONSTANT)
    Q_PROPERTY(double disabledOpacity MEMBER disabledOpacity CONSTANT)
    Q_PROPERTY(double textLineHeight MEMBER textLineHeight CONSTANT)

public:
    explicit SizeScale(double textScale = Tokens::leastTextScale) : m_textScale(textScale) {}

private:
    int text(int measure) const { return Tokens::scaled(measure, m_textScale); }

    const double m_textScale; // before all that read it

public:
    const int windowWidth = 1040;
    const int windowHeight = 720;
    const int windowMinimumWidth = 880;
    const int windowMinimumHeight = 600;
    const int menuBar = text(28);
    const int toolbar = text(52);
    const int summaryBar = text(44);
    const int summaryLine = text(16);
    const int strip = text(52);
    const int fileRow = text(24);
    const int sidebarMinimum = 240;
    const int sidebarIdeal = 280;
    const int sidebarMaximum = 360;
    const int inspectorMinimum = 300;
    const int inspectorIdeal = 340;
    const int inspectorMaximum = 420;
    const int detailRoom = text(640); // what the columns beside the detail pane leave it while they can
    const int bannerMaximum = text(560);
    const int readingWidth = text(360); // the widest that an explanation runs
    const int dialogWidth = text(440);
    const int wideDialogWidth = text(520);
    const int dialogSymbol = text(24);
    const int notesMaximum = text(240); // the highest that release notes stand before they scroll
    const int trackRow = text(Tokens::Size::trackRow);
    const int columnHead = text(Tokens::Size::columnHead);
    const int groupCard = text(Tokens::Size::groupCard);
    const int sectionHead = text(Tokens::Size::sectionHead);
    const int playlistRow = text(Tokens::Size::playlistRow);
    const int folderRow = text(Tokens::Size::folderRow);
    const int depthIndent = Tokens::Size::depthIndent;
    const int button = text(28);
    const int smallButton = text(22);
    const int field = text(28);
    const int menuEntry = text(28);
    const int menuWidth = text(260);
    const int switchWidth = text(34);
    const int switchHeight = text(20);
    const int switchKnob = text(16);
    const int switchInset = text(2);
    const int check = text(16);
    const int stepperWidth = text(56);
    const int stepperHeight = text(26);
    const int popUp = text(132); // the narrowest
    const int formRow = text(40);
    const int formRowOfTwoLines = text(52);
    const int settingsWidth = text(720);
    const int settingsHeight = text(640);
    const int settingsMinimumHeight = 400;
    const int tabRow = text(72);
    const int tabWidth = text(82);
    const int tabHeight = text(56);
    const int tabSymbol = text(20);
    const int formSide = 40;
    const int sourceList = text(200); // the least height
    const int bar = 4;
    const int meter = 6;
    const int candidate = text(50);
    const double pickedStroke = 1.5;
    const int rowBar = 70;
    const int logo = text(18);
    const int spinner = text(12);
    const int largeSpinner = 24;
    const int symbol = text(14);
    const int smallSymbol = text(12);
    const int badgeSymbol = text(14);
    const int badgeInset = 6;
    const int chevron = text(10);
    const int folderSymbol = text(15);
    const int bannerSymbol = text(16);
    const int emptySymbol = 44;
    const int smallEmptySymbol = 36;
    const int sheetWidth = 620;
    const int sheetHeight = 560;
    const int setupHeader = text(60);
    const int setupHeaderTall = text(72); // with a line under its title
    const int setupFooter = text(56);
    const int setupSymbol = text(24);
    const int footerButton = text(32);
    const int stepDot = 6;
    const int currentStepDot = 8;
    const int hero = 132;
    const int heroCore = 100;
    const int heroSymbol = 52;
    const int seal = 96;
    const int welcomeWidth = 440;
    const int recapWidth = 508;
    const int recapRow = text(40);
    const int labelSymbol = text(16);
    const int toolMark = 24;
    const int toolSymbol = 18;
    const int toolBar = 220;
    const int serviceIcon = 36;
    const int sourceIcon = 22;
    const double heroAtRest = 0.96;
    const double sealAtRest = 0.8;
    const int hairline = 1;
    const int focusRing = 2;
    const int focusGap = 1;
    const int scrollBar = 6;
    const int scrollBarHover = 8;
    const int shadowBlur = 28;
    const int shadowOffset = 8;
    const double disabledOpacity = 0.4;
    const double textLineHeight = 1.25;
};

// Inter where it is installed, the system's font elsewhere; sizes in logical pixels, no hinting.
class TypeScale : public QObject {
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(QFont title MEMBER title CONSTANT)
    Q_PROPERTY(QFont title2 MEMBER title2 CONSTANT)
    Q_PROPERTY(QFont emptyTitle MEMBER emptyTitle CONSTANT)
    Q_PROPERTY(QFont title3 MEMBER title3 CONSTANT)
    Q_PROPERTY(QFont headline MEMBER headline CONSTANT)
    Q_PROPERTY(QFont body MEMBER body CONSTANT)
    Q_PROPERTY(QFont bodyMedium MEMBER bodyMedium CONSTANT)
    Q_PROPERTY(QFont callout MEMBER callout CONSTANT)
    Q_PROPERTY(QFont calloutMedium MEMBER calloutMedium CONSTANT)
    Q_PROPERTY(QFont calloutSemibold MEMBER calloutSemibold CONSTANT)
    Q_PROPERTY(QFont caption MEMBER caption CONSTANT)
    Q_PROPERTY(QFont captionMedium MEMBER captionMedium CONSTANT)
    Q_PROPERTY(QFont captionSemibold MEMBER captionSemibold CONSTANT)
    Q_PROPERTY(QFont caption2Semibold MEMBER caption2Semibold CONSTANT)
    Q_PROPERTY(QFont category MEMBER category CONSTANT)
    Q_PROPERTY(QFont log MEMBER log CONSTANT)

public:
    explicit TypeScale(double textScale = Tokens::leastTextScale);

    QFont title, title2, emptyTitle, title3, headline, body, bodyMedium;
    QFont callout, calloutMedium, calloutSemibold, caption, captionMedium, captionSemibold, caption2Semibold;
    QFont category, log;
};

// Durations in milliseconds, all 0 when the user wants less motion.
class MotionScale : public QObject {
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(bool reduced READ reduced NOTIFY changed)
    Q_PROPERTY(int hover READ hover NOTIFY changed)
    Q_PROPERTY(int toggle READ toggle NOTIFY changed)
    Q_PROPERTY(int chevron READ chevron NOTIFY changed)
    Q_PROPERTY(int banner READ banner NOTIFY changed)
    Q_PROPERTY(int bar READ bar NOTIFY changed)
    Q_PROPERTY(int inspector READ inspector NOTIFY changed)
    Q_PROPERTY(int sheet READ sheet NOTIFY changed)
    Q_PROPERTY(int hero READ hero NOTIFY changed)
    Q_PROPERTY(int spring READ spring NOTIFY changed)
    Q_PROPERTY(QVariantList springCurve READ springCurve CONSTANT)
    Q_PROPERTY(int spinnerStep READ spinnerStep CONSTANT)
    Q_PROPERTY(int spinnerAngle READ spinnerAngle CONSTANT)
    Q_PROPERTY(int hintDelay READ hintDelay CONSTANT)
    Q_PROPERTY(int hintStay READ hintStay CONSTANT)

public:
    bool reduced() const { return m_reduced; }
    void setReduced(bool reduced);
    int hover() const { return m_reduced ? 0 : 80; }
    int toggle() const { return m_reduced ? 0 : 150; }
    int chevron() const { return m_reduced ? 0 : 180; }
    int banner() const { return m_reduced ? 0 : 220; }
    int bar() const { return m_reduced ? 0 : 200; }
    int inspector() const { return m_reduced ? 0 : 240; }
    int sheet() const { return m_reduced ? 0 : 260; }
    int hero() const { return m_reduced ? 0 : 500; }
    // A spring of response 0.5 and damping 0.85: it has come to rest by then, on this curve.
    int spring() const { return m_reduced ? 0 : 450; }
    QVariantList springCurve() const { return {0.25, 0.15, 0.25, 1.05, 1, 1}; }
    int spinnerStep() const { return 75; }  // 12 steps a turn of 900
    int spinnerAngle() const { return 30; } // degrees a step
    int hintDelay() const { return 600; }
    int hintStay() const { return 5000; }

Q_SIGNALS:
    void changed();

private:
    bool m_reduced = false;
};

} // namespace zelk

#include "Styling/Symbols.h"
#include "Views/Settings/SettingsTabs.h"

#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

class SettingsTabsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void eachTabHasItsSymbol_data() {
        QTest::addColumn<int>("place");
        QTest::addColumn<QString>("label");
        QTest::addColumn<QString>("symbol");
        int place = 0;
        const auto row = [&place](const QString &label, const QString &symbol) {
            QTest::newRow(qPrintable(label)) << place++ << label << symbol;
        };
        row(u"General"_s, u"gear"_s);
        row(u"Accounts"_s, u"person.crop.circle"_s);
        row(u"Sources"_s, u"square.stack.3d.up"_s);
        row(u"Quality"_s, u"waveform"_s);
        row(u"Output"_s, u"folder"_s);
        row(u"Vantrix VPN"_s, u"lock.shield"_s);
        row(u"Command Line"_s, u"terminal"_s);
        row(u"Diagnostics"_s, u"stethoscope"_s);
    }
    void eachTabHasItsSymbol() {
        QFETCH(int, place);
        const auto face = settingsTabFaces().at(static_cast<std::size_t>(place));
        QTEST(face.label, "label");
        QTEST(face.symbol, "symbol");
        QVERIFY(Symbols::contains(face.symbol));
    }
};

QTEST_GUILESS_MAIN(SettingsTabsTest)
#include "tst_settingstabs.moc"

#include "FormStates.h"
#include "TextFit.h"

#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

// Paths, and what the engine says while it works.
bool mayElide(QQuickItem *text) {
    return TextFit::isIn(text, {u"folderPath"_s, u"recapFolder"_s, u"toolsLog"_s});
}

// Collects what is wrong in each state.
class Faults {
public:
    FormStates::Look look() {
        return [this](QQuickWindow *window, const char *state) {
            ++seen;
            for (const QString &each : TextFit::faults(window->contentItem(), mayElide))
                found += QLatin1StringView(state) + u": "_s + each;
        };
    }
    ~Faults() {
        for (const QString &each : std::as_const(found))
            qWarning("%s", qPrintable(each));
    }

    QStringList found;
    int seen = 0;
};

void addScales() {
    QTest::addColumn<double>("scale");
    for (const double scale : {1.0, 1.1, 1.25, 1.4, 1.5})
        QTest::newRow(QByteArray::number(scale).constData()) << scale; // in every locale the same
}

} // namespace

class FormTextSizeTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u"qrc:.*"_s)); }
    void cleanup() { settleDown(); }

    void everyTextOfTheSetupShowsWhole_data() { addScales(); }
    void everyTextOfTheSetupShowsWhole() {
        QFETCH(double, scale);
        SetupWindow bench;
        bench.desktop->setTextScale(scale);
        bench.window.window()->resize(bench.window.window()->minimumSize());
        Faults faults;
        FormStates::ofSetup(bench, faults.look());
        QCOMPARE(faults.found, QStringList());
        QCOMPARE(faults.seen, 10);
    }

    void everyTextOfTheSettingsShowsWhole_data() { addScales(); }
    void everyTextOfTheSettingsShowsWhole() {
        QFETCH(double, scale);
        SettingsBench bench(FormStates::everything(false));
        bench.desktop->setTextScale(scale);
        Faults faults;
        FormStates::ofSettings(bench, faults.look());
        QCOMPARE(faults.found, QStringList());
        QCOMPARE(faults.seen, 11);
    }
};

QTEST_MAIN(FormTextSizeTest)
#include "tst_textsize_forms.moc"

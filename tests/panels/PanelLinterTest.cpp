#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QRegularExpression>
#include <QTabBar>
#include <QWidget>
#include <map>
#include <memory>
#include <set>

#include "support/TextFiles.h"
#include "toolkit/Display.h"
#include "toolkit/PanelFile.h"

namespace tarvex {
namespace {

const QString kPanels = TARVEX_SHARE "/Tarvex/TarvexPanels";

// What the program fetches by name and calls; `more` are callbacks that the desktop adds.
struct Named {
  const char* gadgets;
  const char* callbacks;
  const char* more = "";
};

constexpr const char* kDefinition = "cancel apply distType ok formula reset";
constexpr const char* kTabulated = "add formula load ok cancel apply save reset del distType";
constexpr Named kInspector{"LaName TeNote LaFactorType LaDist boundGraph", "dismiss"};

const std::map<QString, Named> kNamed = {
    {"PMainPanel",
     {"MnMenu MlPrepVels TeConfiguration TeExternalConf SelSamplesSource BMonteCarlo BConfigure BGenerate BOld "
      "TOldGeneration BImport TImportFile BVisualize BSelectInput BStart BAbortMonteCarlo BSeeLog BAnalyse BVelsFile "
      "TVelsFile IcArrow1 IcArrow2",
      "ishigami loadCfg analyse sobol1 AboutTarvex help seeLog visualize oldGeneration helpSearch linear changeSel "
      "selectInput monteCarlo configure quickSave generate sobol3 levelE resetConfiguration velsFile start sobol0 "
      "saveCfg importGeneration sobol2 abortMonteCarlo terminate",
      "undo redo runParts"}},
    {"PGenerate", {"RgPercentage MlPercentage MlFileName TeTitle", "stop"}},
    {"PExternalModel", {"MlModelName MlFileName icon1 icon2 icon3 icon4 icon5 icon6 icon7", "stop"}},
    {"PLogFile", {"TeText MFileName", "fileOpen close"}},
    {"PHelp", {"MlTitle IcText TText", "dismiss"}},
    {"PQuickHelp", {"IcText TText", ""}},
    {"PHelpViewer",
     {"BBack BForward TFind BPrevious BNext TwPages TvContents TIndex LvIndex TSearch MlResults LwResults TbPage "
      "MlProblem MlStatus",
      "",
      "back forward home findText findPrevious findNext larger smaller openContents filterIndex openIndex search "
      "openResult"}},
    {"PAbout", {"MLText", "close"}},
    {"PPrepMain",
     {"MlSourceInfo MlMethodInfo TInputSelection TOutputSelection SlMethods FMethods BCreate BModify BVisualize "
      "BInputSelection BOutputSelection BSetting BSpecify BOk",
      "modify inputSelection cancel select visualize setting create outputSelection ok specify"}},
    {"PInputFactors",
     {"MaFactors MnMenu BAdd BDelete BModify BSave BOpen BNew BCorrelate BStein BVisualize",
      "deletion modify selectItem ok truncation cancel correlate open impStein doppioclick add newFactors save "
      "visualize",
      "search undo redo moveUp moveDown"}},
    {"PVisInputFactors", {"MaFactors", "selectItem exit visualize"}},
    {"POutputSelection", {"SelOrder MaFactors BScrollUp BScrollDown", "cancel selectFactor scrollDown scrollUp ok"}},
    {"PCorrelation",
     {"SeCorrType NoCorrelation MnMenu MlMessage BOk AUndo ARedo AClear", "changeCorrType plot apply cancel",
      "pageChanged undo redo clear"}},
    {"PCorrelationPage1",
     {"SlFactors TrCorrelation",
      "startDragFacTree doubleClick duringDragFacList duringDragFacTree startDragFacList endDragFacList endDragFacTree",
      "takeFactor"}},
    {"PCorrelationPage2", {"MaCorrelations MlPair BNearest", "checkValue saveCorrTable", "nearest"}},
    {"PCorrelationPage3", {"MaSamples MlStein BStein BPrevious BNext", "steinCorr previous next"}},
    {"PCorrelationPage4", {"ScPoints OFirst OSecond MlOutcome", "", "choosePair"}},
    {"PCorrelationValue", {"FTitle NValue MlPair MlMessage", "cancel apply", "edited"}},
    {"PTruncation", {"MaFactors NLeftTrunc NRightTrunc MlTruncation", "cancel ok help", "edited"}},
    {"PGraphics",
     {"boundGraph", "outline frequency saveImg choose area histogram invCumulative dismiss visualize cumulative"}},
    {"PConstant", {"TName TNote ODistType NValue", "cancel distType ok reset", "edited"}},
    {"PDistBeta", {"TName TNote ODistType NAlfa NBeta boundGraph BFormula", kDefinition, "edited"}},
    {"PDistDisc", {"TName TNote ODistType MaValues BAdd BDel BLoad BSave boundGraph", kTabulated, "edited selectRow"}},
    {"PDistExp", {"TName TNote ODistType NLambda NRightTrunc boundGraph MlTruncation", kDefinition, "edited"}},
    {"PDistGamma", {"TName TNote ODistType NLambda NRightTrunc boundGraph MlTruncation", kDefinition, "edited"}},
    {"PDistNorm",
     {"TName TNote ODistType NMean NStdDeviation NLeftTrunc NRightTrunc boundGraph BFormula MlTruncation", kDefinition,
      "edited"}},
    {"PDistTriang", {"TName TNote ODistType NAlfa NBeta NGamma boundGraph", kDefinition, "edited"}},
    {"PDistUnif",
     {"TName TNote ODistType MaValues BAdd BDel BLoad BSave boundGraph BFormula", kTabulated, "edited selectRow"}},
    {"PDistWeib", {"TName TNote ODistType NBeta NRightTrunc boundGraph MlTruncation", kDefinition, "edited"}},
    {"PRelation",
     {"TeRelation SlFactors TName TNote OFunctions BPlus BMinus BMultiply BDivided",
      "operation cancel selFunction apply power moved closePar openPar number distType ok dot addFactor reset",
      "edited"}},
    {"InspectorBeta", kInspector},
    {"InspectorConst", {"LaName TeNote LaFactorType LaDist", "dismiss"}},
    {"InspectorDisc", kInspector},
    {"InspectorExp", kInspector},
    {"InspectorGamma", kInspector},
    {"InspectorNorm", kInspector},
    {"InspectorRelat", {"LaName TeNote LaFactorType LaDist", "dismiss"}},
    {"InspectorTriang", kInspector},
    {"InspectorUnif", kInspector},
    {"InspectorWeib", kInspector},
    {"PRandom", {"NSeed NExecution", "cancel ok help", "edited"}},
    {"PLatin", {"NSeed NExecution labNumExe", "cancel ok help", "edited"}},
    {"PLpTau", {"OExecutions", "cancel ok help", "edited"}},
    {"PMorris", {"NSeed OExecution OLevels", "cancel ok help", "edited"}},
    {"PFast",
     {"NSeed NExecution OSettings SlGroups MlGroups BNewGroup BModify BDelete",
      "settings modify cancel newGroup ok delGroup help", "edited"}},
    {"PGroupSelect", {"SlAvailable SlSelected BRight BLeft", "selectAvailable selectSelected right left cancel ok"}},
    {"PFixed",
     {"MaSamples MlFactorType NValue NDensity NProbability", "add cancel scrollTitle ok help remove", "load save"}},
    {"PRepLatin",
     {"NSeed NBaseDesign NReplications NSampleSize SCChoice MaElements labSamSize labNumRep",
      "changeSampling changeSize cancel ok clickMatrix help", "edited"}},
    {"PSobol",
     {"TOSwitchSel LUserOrder TOrder ChCheapDesign OExecutions", "minimize orderIns ok cancel help changeSel",
      "edited"}},
    {"PExternal",
     {"SeSwitchModel FExtModel FIntModel CModel BModel TModelName TExecute TOutFile TExcelLabel TExistConf TModelExe "
      "TExcel "
      "TOutput BOutputFile TIntModelFile BInternalModel BCreateNewIntModel BModifyInternalModel MaCells MlMessage",
      "NewIntModel switchModel switchExcel modelSelect modIntModel switchExternalExe ok loadIntModel cancel "
      "outputSelect changeIntModelFile",
      "loadTyped edited tryRun formatHelp"}},
    {"PTryRun",
     {"OTrial NTrialRow BRun BStop MlOutcome MlCommand TePrinted TeOutput MaUnderstood MlMessage", "",
      "trialRow tryRun stop close"}},
    {"PParts",
     {"OEngine NParts NJobs OFailure NRepeats NLimit NMemory TeLinks TDirectory MlMessage BStart", "",
      "switchEngine edited start cancel"}},
    {"PPartsRun",
     {"MlState RgDone MlPace MlDriver FdParts MlPart NoPart TePrinted TeRows MaSoFar MlSoFar BRetry BRetryAll BGoOn "
      "BStop BSoFar BTake BDetach",
      "", "selectPart showPage retry retryAll goOn stop soFar take detach"}},
    {"PIntModel",
     {"TModelName OInFactors MaExpress OTrial NTrialRow MlMessage",
      "exit textModified open saveAs doubleClick save newModel modifyExpression addExpression deleteExpression "
      "modifyFactors click ok",
      "trialRow undo redo moveUp moveDown"}},
    {"PIntModFacList",
     {"MaIntModFactors TeNewFactor MlMessage", "addFactor cancel moveDown moveUp modify textEdit delAll deleteFac ok"}},
    {"PNewExpression",
     {"TExprName TExpr SeOutType SlFactors SlResults OFunctions MlValue MlMessage",
      "add changeResultType operation selResCalc cancel power openPar closePar selFunction selFactors", "edited"}},
    {"PnewFactorName", {"TeNewName MlUses", "cancel ok"}},
    {"PPlots",
     {"NoPlots MlKept MlMessage BAllRuns BComplement BSave", "dismiss",
      "pageChanged complement allRuns saveRuns save"}},
    {"PPlotsPage1",
     {"SlAvailable SlSelected BRight BLeft BScatter BCobwebs BHistogram",
      "selectAvailable selectSelected right left scatter cobwebs histogram"}},
    {"PPlotsPage2", {"MaSamples BPrevious BNext BNotation BSaveTable", "next previous saveTable", "notation"}},
    {"PPlotsPage3", {"MaCorrelations OKind MlPair", "checkValue saveCorrTable", "correlationKind pair map notation"}},
    {"PScatter",
     {"SpSamples RSelected MlFirstVar MlSecondVar OFirst OSecond TLogFirst TLogSecond TJitter TShade LTime HsTime "
      "MlTime "
      "MlKept MlMessage",
      "saveImg close save", "choose scale frame complement allRuns saveRuns"}},
    {"PCobwebs",
     {"TeBackground TShowDropped TSystemColours LTime HsTime MlTime MlKept MlMessage", "saveImg save close",
      "filters showDropped colours complement allRuns saveRuns"}},
    {"PCobSelect", {"OAxis NLowerBound NUpperBound MlRange MlMessage", "cancel apply reset", "choose edited"}},
    {"PHistogram",
     {"TBackground BArea TLog TAllBins TKept LTime HsTime MlTime MlMessage",
      "outline frequency saveImg area histogram invCumulative dismiss cumulative", "scale"}},
    {"PSingleFactor",
     {"TBackground BArea OFactor TLog TAllBins TKept LTime HsTime MlTime MlMessage",
      "area cumulative outline saveImg histogram frequency invCumulative", "dismiss scale choose"}},
    {"PPicture", {"ScPicture MlKept MlMessage", "", "saveImg close save complement allRuns saveRuns"}},
    {"PVelsMain",
     {"MaVariables MaSelected TExpression BPower BOpenPar BClosedPar BPlus BMinus BMultiply BDivided OFunctions "
      "BAddExpr BAbortExpr BAdd BAddAll BRemove BRemoveAll BUa BSa BPlots BReport BOpen BSave MlMode MlMessage",
      "selFunction power remove operation openPar add abortExpr closePar addExpr ua removeAll sa addAll save dismiss",
      "edited open plots report selectRow take"}},
    {"PSelectVariable",
     {"MlMin MlMax ScTimesAvail SelTime FSingle FMulti NLower NUpper NNumPoints BNewVar BNewExpr MlMessage",
      "changeSel cancel newExpr newVar", "edited"}},
    {"PUaSelect",
     {"SlAvailable SlSelected BLeft BRight BAddAll BRemoveAll LAvailable LSelected MlPrompt MlMessage",
      "ok selectSelected left selectAvailable cancel removeAll right addAll"}},
    {"PReport", {"TTitle TAuthor TDate MlMessage", "cancel save"}},
    {"PUaSetting", {"OTcheby OKolmog SelScale MlScale MlMessage", "cancel ok cheby kolmog"}},
    {"PUaSingle",
     {"MnMenu NoVariable MaStatistics OVariable BSelect TAllBins LTime HsTime MlTime MlWait MlMessage", "dismiss",
      "bins choose chooseVariable pageChanged select settings"}},
    {"PUaSinglePage1",
     {"TBackground NLower NUpper NValue BOutline BArea BCumulative BInvCumulative",
      "area cumulative boundSet outline saveImg histogram frequency invCumulative"}},
    {"PUaSinglePage2", {"MaPoints", "saveTable"}},
    {"PUaSinglePage3", {"TShares TThresholds OConfidence MaQuantiles MlMethod", "", "quantiles"}},
    {"PUaSinglePage4", {"ScTimes TLogTime", "", "saveTimes timeScale"}},
    {"PSaRandom",
     {"ScPieName OIndex OAlpha MlTitle MlRow MlRank MlRowAdj MlRankAdj MlReason LTime HsTime MlTime MlState MlMessage "
      "NoIndexes",
      "alphaChanged dismiss visualSA indexChanged", "changeVariable saveTable allMeasures"}},
    {"PSaRandomPage1", {"OForm OOrder ChIndexes", "saveImg visualize", "changePie changeOrder"}},
    {"PSaRandomPage2", {"ShIndexes", "doppioClick"}},
    {"PSaFast",
     {"ScPieName MlTitle LTime HsTime MlTime MlState MlMessage NoIndexes OForm OOrder ChNorm ChIndexes ShIndexes",
      "saveTable saveImg visualize changePie dismiss doppioClick", "changeVariable changeOrder switchNorm"}},
    {"PSaFastTO", {"MlTitle LTime HsTime MlTime MlState MlMessage NoIndexes", "dismiss"}},
    {"PSaFastTOPage1",
     {"OForm OOrder ChNorm ScPieNameFO ScPieNameTO FastPieFirst FastPieTotal", "saveImg visualize changePie switchNorm",
      "changeOrder changeVariableFO changeVariableTO"}},
    {"PSaFastTOPage2", {"FRUp FRDown ShFirst ShTotal", "saveTable", "doppioClick"}},
    {"PSaImpMeasures",
     {"ScPieName MlTitle LTime HsTime MlTime MlState MlMessage NoIndexes OForm OOrder ChNorm ChIndexes ShIndexes",
      "saveTable saveImg visualize dismiss doppioClick", "changeVariable changePie changeOrder switchNorm"}},
    {"PSaMorris",
     {"ScPieName MlTitle MlState MlMessage IcMu IcSigma NoIndexes OForm OOrder ChIndexes ShIndexes",
      "saveTable dismiss doppioClick saveImg visualize", "changeVariable changePie changeOrder"}},
    {"PSaSobol", {"ScPieName MlTitle LTime HsTime MlTime MlState MlMessage NoIndexes", "dismiss", "changeVariable"}},
    {"PSaSobolTOPage1", {"OForm OOrder ChNorm ChIndexes", "saveImg visualize changePie switchNorm", "changeOrder"}},
    {"PSaSobolPage2", {"ShIndexes", "saveTable doppioClick"}},
    {"PSaSingle", {"MlTitle MlMessage LTime HsTime MlTime ShIndexes", "saveTable doppioClick dismiss"}},
    {"PSaRandomSelect", {"NoSelect BOk", "cancel ok", "changePage"}},
    {"PSaRandomSelectSubPage",
     {"MlPrompt FAvailable FSelected SlAvailable SlSelected BRight BLeft BAddAll BRemoveAll",
      "removeAll selectSelected selectAvailable addAll left right"}},
    {"PForecast", {"MlForecast ChForecast LTime HsTime MlTime", "ok"}},
    {"PVisualSA",
     {"NoData MaSamples MlState BPrevious BNext BSaveTable LTime HsTime MlTime", "saveTable previous next dismiss"}},
    {"PVisualSAPage1",
     {"SlAvailFac SlAvailVar SlSelected BRight BLeft BScatter BCobwebs",
      "cobwebs scatter right left selectSelected deSelect selectAvailable"}},
    {"PLinkFactors", {"MaLinks", "scrollDown scrollUp ok cancel selectElem", "pairNames"}},
    {"PLinkOutputs", {"MaLinks MlWarning", "", "scrollDown scrollUp ok cancel selectElem pairNames"}},
};

std::set<QString> words(const char* text) {
  const QStringList list = QString(text).split(' ', Qt::SkipEmptyParts);
  return {list.begin(), list.end()};
}

QStringList panelNames() {
  QStringList names;
  for (const QString& file : QDir(kPanels).entryList({"*.ui"}, QDir::Files)) names << file.chopped(3);
  return names;
}

bool isControl(const QWidget* widget) {
  if (widget->objectName().startsWith("qt_") || widget->objectName().isEmpty()) return false;
  if (qobject_cast<const QTabBar*>(widget->parent()) != nullptr) return false;  // its arrows
  return qobject_cast<const QAbstractButton*>(widget) != nullptr || qobject_cast<const QComboBox*>(widget) != nullptr ||
         qobject_cast<const QLineEdit*>(widget) != nullptr || qobject_cast<const QPlainTextEdit*>(widget) != nullptr ||
         qobject_cast<const QAbstractItemView*>(widget) != nullptr;
}

bool isOwn(const QWidget* widget) {
  return !widget->objectName().isEmpty() && !widget->objectName().startsWith("qt_");
}

bool isSeparator(const QObject* object) {
  const auto* const action = qobject_cast<const QAction*>(object);
  return action != nullptr && action->isSeparator();
}

// The letter behind '&', or none.
QChar mnemonic(const QString& text) {
  const auto found = QRegularExpression("&([^&])").match(text);
  return found.hasMatch() ? found.captured(1).at(0).toLower() : QChar();
}

class PanelLinter : public testing::Test {
 protected:
  PanelLinter() { display_.appendToSearchPath(kPanels); }

  std::unique_ptr<QWidget> load(const QString& name) {
    QString problem;
    std::unique_ptr<QWidget> window(loadPanelFile(display_, name, nullptr, problem));
    EXPECT_NE(window, nullptr) << problem.toStdString();
    return window;
  }
  // Calls the check with each panel, laid out and as large as it wants to be at the start.
  void eachPanel(const std::function<void(const QString&, QWidget&)>& check) {
    for (const QString& name : panelNames()) {
      SCOPED_TRACE(name.toStdString());
      const std::unique_ptr<QWidget> window = load(name);
      if (!window) continue;
      window->show();
      QCoreApplication::processEvents();
      check(name, *window);
    }
  }

  Display display_;
};

TEST_F(PanelLinter, EveryPanelHasWhatIsNamedAndNothingUnknown) {
  std::set<QString> left;
  for (const auto& [name, named] : kNamed) left.insert(name);
  eachPanel([&](const QString& name, QWidget& window) {
    left.erase(name);
    ASSERT_EQ(kNamed.count(name), 1U) << "no row says what the panel has";
    const Named& named = kNamed.at(name);
    for (const QString& gadget : words(named.gadgets))
      EXPECT_NE(window.findChild<QObject*>(gadget), nullptr) << gadget.toStdString();
    std::set<QString> called;
    for (const QObject* const object : window.findChildren<QObject*>())
      for (const char* const property : {"callback", "doubleCallback", "dragCallbacks"})
        called.merge(words(object->property(property).toString().toUtf8().constData()));
    std::set<QString> known = words(named.callbacks);
    known.merge(words(named.more));
    EXPECT_EQ(QStringList(called.begin(), called.end()).join(' ').toStdString(),
              QStringList(known.begin(), known.end()).join(' ').toStdString());
  });
  EXPECT_TRUE(left.empty()) << "panel files are missing: " << left.begin()->toStdString();
}

TEST_F(PanelLinter, EveryControlHasANameATooltipAndAnAccessibleName) {
  eachPanel([](const QString&, QWidget& window) {
    std::set<QString> names;
    for (const QWidget* const widget : window.findChildren<QWidget*>()) {
      if (isOwn(widget) && widget->objectName() != "tableSearch") {  // every table has one
        EXPECT_TRUE(names.insert(widget->objectName()).second) << widget->objectName().toStdString();
      }
      if (!isControl(widget)) continue;
      EXPECT_FALSE(widget->toolTip().isEmpty()) << widget->objectName().toStdString();
      EXPECT_FALSE(widget->accessibleName().isEmpty()) << widget->objectName().toStdString();
    }
  });
}

TEST_F(PanelLinter, NoMnemonicStandsTwice) {
  const auto once = [](std::map<QChar, QString>& taken, const QString& text, bool all) {
    const QChar key = mnemonic(text);
    EXPECT_FALSE(all && key.isNull()) << text.toStdString() << " has none";
    if (key.isNull()) return;
    const auto [found, added] = taken.emplace(key, text);
    EXPECT_TRUE(added) << text.toStdString() << " and " << found->second.toStdString();
  };
  eachPanel([&](const QString&, QWidget& window) {
    std::map<QChar, QString> taken;
    if (const auto* const bar = window.findChild<QMenuBar*>()) {
      for (const QAction* const menu : bar->actions()) once(taken, menu->text(), true);
    }
    for (const QMenu* const menu : window.findChildren<QMenu*>()) {
      std::map<QChar, QString> items;
      for (const QAction* const item : menu->actions())
        if (!item->isSeparator()) once(items, item->text(), true);
    }
    for (const QAbstractButton* const button : window.findChildren<QAbstractButton*>())
      if (isControl(button)) once(taken, button->text(), true);
    for (const QLabel* const label : window.findChildren<QLabel*>())
      if (label->buddy() != nullptr) once(taken, label->text(), true);
  });
}

TEST_F(PanelLinter, TabsGoAsTheEyeDoes) {
  // Column by column: what is tabbed to stands below or to the right of what was left.
  eachPanel([](const QString&, QWidget& window) {
    std::vector<const QWidget*> order;
    for (const QWidget* next = window.nextInFocusChain(); next != &window; next = next->nextInFocusChain())
      if (isControl(next) && (next->focusPolicy() & Qt::TabFocus) != 0 && next->isVisible()) order.push_back(next);
    for (std::size_t i = 1; i < order.size(); ++i) {
      const QRect before(order[i - 1]->mapTo(&window, QPoint()), order[i - 1]->size());
      const QRect now(order[i]->mapTo(&window, QPoint()), order[i]->size());
      EXPECT_TRUE(now.top() >= before.bottom() || now.left() >= before.right())
          << order[i]->objectName().toStdString() << " after " << order[i - 1]->objectName().toStdString();
    }
  });
}

TEST_F(PanelLinter, NoTextIsCutAndNoPanelIsTooLarge) {
  const QFont usual = QApplication::font();
  for (const double scale : {1.0, 1.25}) {
    for (const double longer : {1.0, 1.4}) {
      SCOPED_TRACE(testing::Message() << "scale " << scale << ", texts " << longer);
      QFont font = usual;
      font.setPointSizeF(usual.pointSizeF() * scale);
      QApplication::setFont(font);
      eachPanel([&](const QString&, QWidget& window) {
        for (auto* const button : window.findChildren<QAbstractButton*>())
          if (isControl(button))
            button->setText(
                button->text() +
                QString(static_cast<int>(static_cast<double>(button->text().size()) * (longer - 1.0)), 'x'));
        window.resize(window.minimumSizeHint());
        QCoreApplication::processEvents();
        for (const auto* const button : window.findChildren<QAbstractButton*>()) {
          if (!isControl(button) || !button->isVisible()) continue;
          EXPECT_GE(button->width(), button->minimumSizeHint().width()) << button->text().toStdString();
        }
        for (const auto* const label : window.findChildren<QLabel*>()) {
          if (!isOwn(label) || !label->isVisible() || label->wordWrap()) continue;
          EXPECT_GE(label->width(), label->minimumSizeHint().width()) << label->text().toStdString();
        }
        const QSize least = window.minimumSizeHint();
        EXPECT_LE(least.width(), 1024);
        EXPECT_LE(least.height(), 700);
      });
    }
  }
  QApplication::setFont(usual);
}

// What a reader of the screen is told. A list box gives its current text as its name: it
// needs a label of its own.
TEST_F(PanelLinter, NoControlIsNamelessForThoseWhoDontSeeIt) {
  static const std::set<QAccessible::Role> kControls = {
      QAccessible::PushButton,   QAccessible::CheckBox, QAccessible::RadioButton, QAccessible::ComboBox,
      QAccessible::EditableText, QAccessible::List,     QAccessible::Table,       QAccessible::Tree,
      QAccessible::SpinBox,      QAccessible::Slider,   QAccessible::ProgressBar, QAccessible::MenuItem,
      QAccessible::PageTab,      QAccessible::Chart};
  const std::function<void(QAccessibleInterface*)> walk = [&](QAccessibleInterface* access) {
    if (access == nullptr || !access->isValid()) return;
    const auto* const widget = qobject_cast<const QWidget*>(access->object());
    const bool whole = widget == nullptr || isOwn(widget);  // not the parts that Qt makes of a control
    const QString name = access->text(QAccessible::Name);
    const auto* const combo = qobject_cast<const QComboBox*>(access->object());
    if (whole && kControls.count(access->role()) > 0 && !access->state().invisible) {
      const QString object = access->object() != nullptr ? access->object()->objectName() : QString();
      EXPECT_FALSE(name.isEmpty() && !isSeparator(access->object()))
          << object.toStdString() << ", role " << access->role();
      EXPECT_FALSE(combo != nullptr && name == combo->currentText() && access->relations(QAccessible::Label).isEmpty())
          << object.toStdString();
    }
    const bool hasItems = access->role() == QAccessible::List || access->role() == QAccessible::Table ||
                          access->role() == QAccessible::Tree;
    for (int i = 0; !hasItems && i < access->childCount(); ++i) walk(access->child(i));
  };
  eachPanel([&](const QString&, QWidget& window) { walk(QAccessible::queryAccessibleInterface(&window)); });
}

TEST_F(PanelLinter, NoPanelHasColoursOfItsOwn) {
  for (const QString& name : panelNames()) {
    const std::string text = test::readFile((kPanels + '/' + name + ".ui").toStdString());
    for (const char* const fixed : {"<palette>", "<color", "styleSheet", "rgb("})
      EXPECT_EQ(text.find(fixed), std::string::npos) << name.toStdString() << ": " << fixed;
  }
}

}  // namespace
}  // namespace tarvex

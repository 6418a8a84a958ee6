#include "panels/help/PHelpViewer.h"

#include <QFileInfo>
#include <QHelpContentWidget>
#include <QHelpIndexWidget>
#include <QHelpLink>
#include <QHelpSearchEngine>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QListWidget>
#include <QPushButton>
#include <QRegularExpression>
#include <QSplitter>
#include <QTabWidget>
#include <QTextDocumentFragment>
#include <QTreeView>

#include "panels/help/HelpCollection.h"
#include "toolkit/HelpBrowser.h"

namespace tarvex {
namespace {

constexpr int kListWidth = 260;
constexpr int kPageWidth = 700;
constexpr int kMostResults = 100;
constexpr int kTypingPause = 200;  // ms, before what has been typed is searched
constexpr const char* kFields[] = {"TFind", "TIndex", "TSearch"};

// What a user types is words, not the search engine's language.
QStringList wordsOf(const QString& text) {
  static const QRegularExpression others("[^\\w]+", QRegularExpression::UseUnicodePropertiesOption);
  return text.split(others, Qt::SkipEmptyParts);
}

// The place of an address among the contents; a section, which only leads to its first page, is none.
QModelIndex placeOf(const QHelpContentModel& model, const QUrl& url, const QModelIndex& parent = {}) {
  for (int row = 0; row < model.rowCount(parent); ++row) {
    const QModelIndex index = model.index(row, 0, parent);
    if (parent.isValid() && model.contentItemAt(index)->url() == url) return index;
    const QModelIndex below = placeOf(model, url, index);
    if (below.isValid()) return below;
  }
  return {};
}

}  // namespace

PHelpViewer::PHelpViewer(const Display& display, const QString& cache)
    : Panel(display, "PHelpViewer", "HelpViewer", "Tarvex Help"),
      cache_(cache),
      browser_(gadget<HelpBrowser>("TbPage")) {
  for (const char* const field : kFields) gadget<QLineEdit>(field)->installEventFilter(this);
  gadget<QSplitter>("SpParts")->setSizes({kListWidth, kPageWidth});
  gadget<QLabel>("MlProblem")->hide();
  registerCallbacks({{"back", [this] { browser_->backward(); }},
                     {"forward", [this] { browser_->forward(); }},
                     {"home", [this] { serve(HelpCommand::Topic, kStartPage); }},
                     {"findText", [this] { findText(gadget<QLineEdit>("TFind")->text()); }},
                     {"findPrevious", [this] { findAgain(true); }},
                     {"findNext", [this] { findAgain(false); }},
                     {"larger", [this] { browser_->zoom(1); }},
                     {"smaller", [this] { browser_->zoom(-1); }},
                     {"openContents", [this] { openContents(); }},
                     {"filterIndex", [this] { filterIndex(); }},
                     {"openIndex", [this] { openIndex(); }},
                     {"search", [this] { delay_.start(kTypingPause); }},
                     {"openResult", [this] { openResult(); }}});
  bindKey(QKeySequence::Back, [this] { call("back"); });
  bindKey(QKeySequence::Forward, [this] { call("forward"); });
  bindKey(QKeySequence(Qt::ALT | Qt::Key_Home), [this] { call("home"); });
  bindKey(QKeySequence::Find, [this] { gadget<QLineEdit>("TFind")->setFocus(); });
  bindKey(QKeySequence::FindNext, [this] { findAgain(false); });
  bindKey(QKeySequence::FindPrevious, [this] { findAgain(true); });
  bindKey(QKeySequence::ZoomIn, [this] { call("larger"); });
  bindKey(QKeySequence(Qt::CTRL | Qt::Key_Equal), [this] { call("larger"); });  // the same key without Shift
  bindKey(QKeySequence::ZoomOut, [this] { call("smaller"); });
  bindKey(QKeySequence(Qt::CTRL | Qt::Key_0), [this] { browser_->zoom(0); });
  bindKey(QKeySequence(Qt::Key_Escape), [this] { end(false); });
  connect(browser_, &QTextBrowser::sourceChanged, this, [this] { pageChanged(); });
  connect(browser_, &QTextBrowser::historyChanged, this, [this] { pageChanged(); });
  // Behind the shortcuts and double clicks of the table: a page is a click away.
  const std::pair<QAbstractItemView*, const char*> lists[] = {{gadget<QTreeView>("TvContents"), "openContents"},
                                                              {gadget<QListView>("LvIndex"), "openIndex"},
                                                              {gadget<QListWidget>("LwResults"), "openResult"}};
  for (const auto& [list, callback] : lists)
    connect(list, &QAbstractItemView::clicked, this, [this, callback = callback] { call(callback); });
  delay_.setSingleShot(true);
  connect(&delay_, &QTimer::timeout, this, [this] { search(); });
  pageChanged();
}

PHelpViewer::~PHelpViewer() {
  browser_->disconnect(this);
}

void PHelpViewer::serve(HelpCommand command, const QString& topic) {
  if (collection_ == nullptr) open();
  const QUrl wanted = collection_->page(topic.isEmpty() ? kStartPage : topic);
  const QUrl start = collection_->page(kStartPage);
  say({});
  if (command == HelpCommand::Topic) {
    showPage(wanted.isValid() ? wanted : start);
    if (!wanted.isValid()) say("There is no page on " + topic + ".");
  } else {
    if (browser_->source().isEmpty() || command == HelpCommand::Contents) showPage(start);
    if (command == HelpCommand::Contents) turnTo("Contents", "TvContents");
    if (command == HelpCommand::Search) turnTo("Search", "TSearch");
  }
  // In front also when it lies behind another window; where its file is missing, that is said.
  static_cast<void>(show());
}

void PHelpViewer::open() {
  const QString found = display().find(QString("../help/") + kStartPage + ".html");
  collection_ = std::make_unique<HelpCollection>(QFileInfo(found).path(), cache_);
  browser_->setReader([this](const QUrl& url) { return collection_->read(url); });
  auto* const problem = gadget<QLabel>("MlProblem");
  if (found.isEmpty())
    problem->setText("The pages of the help are missing. They belong in the directory help beside the panels: " +
                     display().searchPath().join(", "));
  else if (!collection_->problem().isEmpty())
    problem->setText(
        "There is no table of contents, no index and no search, only the pages and the links in them.\n\n" +
        collection_->problem());
  problem->setVisible(!problem->text().isEmpty());
  gadget<QTabWidget>("TwPages")->setVisible(problem->text().isEmpty());
  if (collection_->engine() != nullptr) openEngine();
}

void PHelpViewer::openEngine() {
  QHelpEngine& engine = *collection_->engine();
  auto* const contents = gadget<QTreeView>("TvContents");
  contents->setModel(engine.contentModel());
  connect(engine.contentModel(), &QHelpContentModel::contentsCreated, this, [this] { pageChanged(); });
  gadget<QListView>("LvIndex")->setModel(engine.indexModel());
  connect(engine.searchEngine(), &QHelpSearchEngine::searchingFinished, this, [this] { showResults(); });
  // What was asked for while the index of words was being made.
  connect(engine.searchEngine(), &QHelpSearchEngine::indexingFinished, this, [this] { search(); });
}

void PHelpViewer::showPage(const QUrl& url) {
  searched_.clear();
  if (url.isValid()) browser_->setSource(url);
}

void PHelpViewer::pageChanged() {
  const auto allow = [this](const char* button, bool possible, const QString& what, const QString& reason) {
    auto* const gadget = this->gadget<QPushButton>(button);
    gadget->setEnabled(possible);
    gadget->setToolTip(possible ? what : what + '\n' + reason);
    gadget->setAccessibleDescription(possible ? QString() : reason);
  };
  allow("BBack", browser_->isBackwardAvailable(), "The page before (Alt+Left)", "No page was shown before.");
  allow("BForward", browser_->isForwardAvailable(), "The page that was left (Alt+Right)", "No page was left.");
  const QString title = browser_->documentTitle();
  setTitle(title.isEmpty() ? "Tarvex Help" : title + " - Tarvex Help");
  browser_->markWords(searched_);
  if (collection_ == nullptr || collection_->engine() == nullptr) return;
  auto* const contents = gadget<QTreeView>("TvContents");
  const QHelpContentModel& places = *collection_->engine()->contentModel();
  const QUrl url = browser_->source();
  QModelIndex place = placeOf(places, url);
  if (!place.isValid()) place = placeOf(places, url.adjusted(QUrl::RemoveFragment));
  if (place.isValid()) contents->setCurrentIndex(place);
  contents->scrollTo(place);
}

void PHelpViewer::turnTo(const char* page, const char* field) {
  auto* const pages = gadget<QTabWidget>("TwPages");
  pages->setCurrentWidget(gadget<QWidget>(page));
  gadget<QWidget>(field)->setFocus();
}

void PHelpViewer::openContents() {
  const QModelIndex index = gadget<QTreeView>("TvContents")->currentIndex();
  if (index.isValid()) showPage(collection_->engine()->contentModel()->contentItemAt(index)->url());
}

void PHelpViewer::filterIndex() {
  const QString text = gadget<QLineEdit>("TIndex")->text();
  QHelpIndexModel* const model = collection_->engine()->indexModel();
  const QModelIndex best = model->filter(text);
  gadget<QListView>("LvIndex")->setCurrentIndex(best);
  say(model->rowCount() == 0 ? "The index has nothing with " + text + '.' : QString());
}

void PHelpViewer::openIndex() {
  const QString keyword = gadget<QListView>("LvIndex")->currentIndex().data().toString();
  const QList<QHelpLink> links = collection_->engine()->documentsForKeyword(keyword);
  if (!links.isEmpty()) showPage(links.first().url);
}

void PHelpViewer::search() {
  const QStringList words = wordsOf(gadget<QLineEdit>("TSearch")->text());
  if (words.isEmpty()) return showResults();
  collection_->engine()->searchEngine()->search(words.join("* ") + '*');  // what begins with all of them
}

void PHelpViewer::showResults() {
  auto* const list = gadget<QListWidget>("LwResults");
  list->clear();
  const QStringList words = wordsOf(gadget<QLineEdit>("TSearch")->text());
  if (!words.isEmpty())
    for (const QHelpSearchResult& result : collection_->engine()->searchEngine()->searchResults(0, kMostResults)) {
      auto* const item = new QListWidgetItem(result.title(), list);
      item->setToolTip(QTextDocumentFragment::fromHtml(result.snippet()).toPlainText());
      item->setData(Qt::UserRole, result.url());
    }
  const int found = list->count();
  gadget<QLabel>("MlResults")
      ->setText(words.isEmpty() ? "Type words to find the pages that have all of them."
                : found == 0    ? "No page has all of these words."
                : found == 1    ? "One page has all of these words."
                                : QString("%1 pages have all of these words.").arg(found));
}

void PHelpViewer::openResult() {
  const auto* const item = gadget<QListWidget>("LwResults")->currentItem();
  if (item == nullptr) return;
  searched_ = wordsOf(gadget<QLineEdit>("TSearch")->text());
  browser_->setSource(item->data(Qt::UserRole).toUrl());
  browser_->markWords(searched_);
}

void PHelpViewer::findText(const QString& text) {
  say(browser_->findHere(text) ? QString() : text + " isn't on this page.");
}

void PHelpViewer::findAgain(bool backwards) {
  const QString text = gadget<QLineEdit>("TFind")->text();
  say(browser_->findNext(text, backwards ? QTextDocument::FindBackward : QTextDocument::FindFlags())
          ? QString()
          : text + " isn't on this page.");
}

void PHelpViewer::say(const QString& text) {
  gadget<QLabel>("MlStatus")->setText(text);
}

// Enter in a field does what belongs to that field.
bool PHelpViewer::eventFilter(QObject* watched, QEvent* event) {
  const bool pressed = event->type() == QEvent::KeyPress;
  if (!pressed && event->type() != QEvent::ShortcutOverride) return Panel::eventFilter(watched, event);
  const auto* const key = static_cast<const QKeyEvent*>(event);
  const bool enter = key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter;
  if (!enter || qobject_cast<QLineEdit*>(watched) == nullptr) return Panel::eventFilter(watched, event);
  event->accept();
  if (!pressed) return true;
  if (watched->objectName() == "TFind") findAgain(key->modifiers().testFlag(Qt::ShiftModifier));
  if (watched->objectName() == "TIndex") openIndex();
  if (watched->objectName() == "TSearch") search();
  return true;
}

}  // namespace tarvex

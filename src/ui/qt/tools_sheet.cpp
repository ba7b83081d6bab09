// SPDX-License-Identifier: MIT
#include "ui/qt/tools_sheet.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "ui/auto_correct_template.h"
#include "ui/create_data_template.h"
#include "ui/phrase_express_template.h"

namespace vntts::ui {

namespace {

// Connects a button's click to a handler of the page's logic.
template <class Logic>
void OnClick(SheetPage& page, int id, Logic* logic, void (Logic::*handler)()) {
  QObject::connect(static_cast<QAbstractButton*>(page.Control(id)), &QAbstractButton::clicked,
                   &page, [logic, handler] { (logic->*handler)(); });
}

} // namespace

SheetPage::SheetPage(const DialogTemplate& page_template, QWidget* sheet)
    : QDialog(sheet, Qt::Widget), built_(BuildDialog(page_template, *this)), desktop_(this) {
  setObjectName(QStringLiteral("vntts_page_%1").arg(page_template.id));
  view_ = std::make_unique<WidgetView>(*this, built_, [](int) {});
}

ToolsSheet::ToolsSheet(const std::string& data_folder)
    : QDialog(nullptr, Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                           Qt::WindowCloseButtonHint),
      tabs_(new QTabWidget(this)) {
  setObjectName(QStringLiteral("vntts_tools"));
  setWindowTitle(QStringLiteral("Tools"));
  auto* create = new SheetPage(create_data::kTemplate, tabs_);
  auto* phrases = new SheetPage(phrase_express::kTemplate, tabs_);
  auto* corrections = new SheetPage(auto_correct::kTemplate, tabs_);
  for (SheetPage* page : {create, phrases, corrections})
    tabs_->addTab(page, page->windowTitle());
  setFont(create->font());

  create_data_ = std::make_unique<CCreateDataPage>(create->view(), create->desktop(),
                                                   QDir::homePath().toStdString());
  phrase_express_ = std::make_unique<CPhraseExpressPage>(phrases->view(), phrases->desktop());
  auto_correct_ =
      std::make_unique<CAutoCorrectPage>(corrections->view(), corrections->desktop(), data_folder);
  ConnectCreateData(*create);
  ConnectPhraseExpress(*phrases);
  ConnectAutoCorrect(*corrections);
  create_data_->OnInitDialog();
  phrase_express_->OnInitDialog();
  auto_correct_->OnInitDialog();

  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(tabs_);
  layout->addWidget(buttons);
  layout->setSizeConstraint(QLayout::SetFixedSize);
}

ToolsSheet::~ToolsSheet() = default;

void ToolsSheet::done(int result) {
  // An Add that is still collecting phrases handles events: it ends after its current phrase.
  phrase_express_->RequestStop();
  QDialog::done(result);
}

void ToolsSheet::ConnectCreateData(SheetPage& page) {
  using namespace create_data;
  CCreateDataPage* logic = create_data_.get();
  auto* tree = static_cast<QTreeWidget*>(page.Control(kTree));
  connect(tree, &QTreeWidget::itemExpanded, &page, [logic](QTreeWidgetItem* item) {
    logic->OnTreeExpanding(WidgetView::TreeItemHandle(item));
  });
  connect(tree, &QTreeWidget::currentItemChanged, &page, [logic] { logic->FillFileList(); });
  connect(static_cast<QComboBox*>(page.Control(kType)), &QComboBox::currentIndexChanged, &page,
          [logic] { logic->FillFileList(); });
  OnClick(page, kCreate, logic, &CCreateDataPage::OnCreateData);
  OnClick(page, kAddFolder, logic, &CCreateDataPage::OnAddFolder);
  OnClick(page, kAddFiles, logic, &CCreateDataPage::OnAddFiles);
}

void ToolsSheet::ConnectPhraseExpress(SheetPage& page) {
  using namespace phrase_express;
  CPhraseExpressPage* logic = phrase_express_.get();
  connect(static_cast<QPlainTextEdit*>(page.Control(kEdit)), &QPlainTextEdit::textChanged, &page,
          [logic] { logic->OnEditChanged(); });
  OnClick(page, kOpen, logic, &CPhraseExpressPage::OnOpen);
  OnClick(page, kSave, logic, &CPhraseExpressPage::OnSave);
  OnClick(page, kLoad, logic, &CPhraseExpressPage::OnLoad);
  OnClick(page, kCreate, logic, &CPhraseExpressPage::OnCreate);
  OnClick(page, kAdd, logic, &CPhraseExpressPage::OnAdd);
  OnClick(page, kDelete, logic, &CPhraseExpressPage::OnDelete);
  OnClick(page, kDeleteAll, logic, &CPhraseExpressPage::OnDeleteAll);
  OnClick(page, kFind, logic, &CPhraseExpressPage::OnFind);
}

void ToolsSheet::ConnectAutoCorrect(SheetPage& page) {
  using namespace auto_correct;
  CAutoCorrectPage* logic = auto_correct_.get();
  connect(static_cast<QLineEdit*>(page.Control(kReplace)), &QLineEdit::textChanged, &page,
          [logic] { logic->OnReplaceChanged(); });
  connect(static_cast<QLineEdit*>(page.Control(kWith)), &QLineEdit::textChanged, &page,
          [logic] { logic->OnWithChanged(); });
  auto* list = static_cast<QTreeWidget*>(page.Control(kList));
  connect(list, &QTreeWidget::currentItemChanged, &page, [logic, list](QTreeWidgetItem* item) {
    if (item) logic->OnItemChanged(list->indexOfTopLevelItem(item));
  });
  OnClick(page, kAdd, logic, &CAutoCorrectPage::OnAdd);
  OnClick(page, kDelete, logic, &CAutoCorrectPage::OnDelete);
  OnClick(page, kLoad, logic, &CAutoCorrectPage::OnLoad);
  OnClick(page, kSave, logic, &CAutoCorrectPage::OnSave);
}

} // namespace vntts::ui

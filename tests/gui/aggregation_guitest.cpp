#include <gtest/gtest.h>

#include <QCheckBox>
#include <QLineEdit>

#include "gui/GuiTestSupport.h"
#include "ui/dialogs/ExtractionDialog.h"
#include "ui/widgets/DataSourceLink.h"
#include "ui/widgets/ExtractionSettingsBox.h"

namespace velda::ui {
namespace {

class NoDataSource : public DataSourceLink {
 public:
  const Connection* connection() const override { return nullptr; }
  bool connect(const std::string&) override { return false; }
};

// Sampling needs the individuals, which the database does not send.
TEST(AggregationSettings, AggregatingInTheDatabaseTurnsSamplingOff) {
  test::guiApplication();
  NoDataSource noSource;
  ExtractionDialog::Values start;
  start.query.sampling = true;
  ExtractionDialog dialog(QueryPurpose::NewData, false, start, noSource, nullptr);
  ExtractionSettingsBox* settings = dialog.settings();
  QCheckBox* inDatabase = settings->inDatabaseBox();
  EXPECT_EQ(inDatabase->text().toStdString(), "Aggregate in the database (individuals are not read)");
  EXPECT_FALSE(inDatabase->isChecked());
  EXPECT_TRUE(settings->samplingBox()->isEnabled());

  inDatabase->setChecked(true);
  EXPECT_FALSE(settings->samplingBox()->isChecked());
  EXPECT_FALSE(settings->samplingBox()->isEnabled());
  EXPECT_FALSE(settings->sampleSizeEdit()->isEnabled());
  NewValues values;
  settings->store(values);
  EXPECT_TRUE(values.inDatabase);
  EXPECT_FALSE(values.sampling);

  inDatabase->setChecked(false);
  EXPECT_TRUE(settings->samplingBox()->isEnabled());
  settings->store(values);
  EXPECT_FALSE(values.inDatabase);

  // The dialog opens again with the box as it was left.
  start.query.inDatabase = true;
  ExtractionDialog again(QueryPurpose::NewData, false, start, noSource, nullptr);
  EXPECT_TRUE(again.settings()->inDatabaseBox()->isChecked());
  EXPECT_FALSE(again.settings()->samplingBox()->isEnabled());
}

}  // namespace
}  // namespace velda::ui

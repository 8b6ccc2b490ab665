#pragma once

#include <QGroupBox>

#include "document/CommandValues.h"

class QCheckBox;
class QLineEdit;

namespace velda::ui {

// "Settings" of the extraction: the weight column, sampling, the minimum
// of individuals per group and aggregation in the database. Each count is
// editable only while its box is ticked; sampling, which needs the
// individuals, is off while the database aggregates.
class ExtractionSettingsBox : public QGroupBox {
  Q_OBJECT

 public:
  ExtractionSettingsBox(const NewValues& values, QWidget* parent = nullptr);

  // Copies the settings into values (counts that are not numbers read as 0).
  void store(NewValues& values) const;

  QCheckBox* weightBox() const { return weight_; }
  QCheckBox* samplingBox() const { return sampling_; }
  QLineEdit* sampleSizeEdit() const { return sampleSize_; }
  QCheckBox* minimumBox() const { return minimumSet_; }
  QLineEdit* minimumEdit() const { return minimum_; }
  QCheckBox* inDatabaseBox() const { return inDatabase_; }

 private:
  QCheckBox* weight_;
  QCheckBox* sampling_;
  QLineEdit* sampleSize_;
  QCheckBox* minimumSet_;
  QLineEdit* minimum_;
  QCheckBox* inDatabase_;
};

}  // namespace velda::ui

#pragma once

#include <string>

namespace velda {
class Connection;
}

namespace velda::ui {

// What the query dialogs need of the document's database connection: the
// current one, and a way to replace it ("&Modify...").
class DataSourceLink {
 public:
  virtual ~DataSourceLink() = default;
  virtual const Connection* connection() const = 0;
  // Opens a new connection; false (the user told why) keeps the old one.
  [[nodiscard]] virtual bool connect(const std::string& connectionString) = 0;
};

}  // namespace velda::ui

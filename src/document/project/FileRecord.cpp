#include "document/project/FileRecord.h"

namespace velda {

FileRecord FileRecord::fromPath(const std::string& path) {
  FileRecord record;
  record.valid = true;
  record.path = path;
  const size_t slash = path.find_last_of('/');
  record.fileName = slash == std::string::npos ? path : path.substr(slash + 1);
  const size_t dot = record.fileName.find_last_of('.');
  record.fileTitle = dot == std::string::npos ? record.fileName : record.fileName.substr(0, dot);
  const size_t pathDot = dot == std::string::npos ? std::string::npos : path.size() - record.fileName.size() + dot;
  record.exportName = (pathDot == std::string::npos ? path + "." : path.substr(0, pathDot + 1)) + "kvf";
  return record;
}

}  // namespace velda

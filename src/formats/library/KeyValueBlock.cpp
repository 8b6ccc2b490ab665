#include "formats/library/KeyValueBlock.h"

namespace velda::symlib {

namespace {

constexpr KeyDescriptor kFileKeys[] = {
    {"procedure_name", KeyType::Text}, {"version", KeyType::Text},      {"create_date", KeyType::Text},
    {"filiere_name", KeyType::Text},   {"filiere_path", KeyType::Text}, {"array", KeyType::Text},
    {"base", KeyType::Text},
};

constexpr KeyDescriptor kHeaderKeys[] = {
    {"title", KeyType::Text},
    {"sub_title", KeyType::Text},
    {"indiv_nb", KeyType::Integer},
    {"weight_indiv", KeyType::Integer},
    {"var_nb", KeyType::Integer},
    {"rules_nb", KeyType::Integer},
    {"nb_var_set", KeyType::Integer},
    {"nb_indiv_set", KeyType::Integer},
    {"nb_var_nom", KeyType::Integer},
    {"nb_var_cont", KeyType::Integer},
    {"nb_var_text", KeyType::Integer},
    {"nb_var_cont_symb", KeyType::Integer},
    {"nb_var_nom_symb", KeyType::Integer},
    {"nb_var_nom_mod", KeyType::Integer},
    {"nb_na", KeyType::Real},
    {"nb_null", KeyType::Real},
    {"nb_hierarchies", KeyType::Integer},
    {"nb_nu", KeyType::Real},
};

}  // namespace

KeyValueBlock::KeyValueBlock(const char* name, std::span<const KeyDescriptor> keys)
    : name_(name), keys_(keys), values_(keys.size()) {}

int KeyValueBlock::find(std::string_view key) const {
  for (size_t i = 0; i < keys_.size(); ++i) {
    if (key == keys_[i].name) return static_cast<int>(i);
  }
  return -1;
}

double KeyValueBlock::number(int key) const {
  const KeyValue& v = values_[key];
  if (!v.set) return 0;
  return keys_[key].type == KeyType::Real ? v.real : static_cast<double>(v.integer);
}

void KeyValueBlock::clear() { values_.assign(keys_.size(), KeyValue{}); }

KeyValueBlock MakeFileBlock() { return KeyValueBlock("FILES", kFileKeys); }

KeyValueBlock MakeHeaderBlock() { return KeyValueBlock("HEADER", kHeaderKeys); }

}  // namespace velda::symlib

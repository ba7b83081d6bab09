// SPDX-License-Identifier: MIT
#include "store/definition_store.h"

#include <algorithm>
#include <mutex>
#include <system_error>

#include "store/file_io.h"
#include "text/char_classes.h"

namespace vntts {

std::vector<Definition> ParseDefinitionLines(std::string_view bytes) {
  std::vector<Definition> definitions;
  std::size_t begin = 0;
  while (begin < bytes.size()) {
    std::size_t end = bytes.find('\n', begin);
    if (end == std::string_view::npos) end = bytes.size();
    std::string_view line = bytes.substr(begin, end - begin);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    if (const auto tab = line.find('\t'); tab != std::string_view::npos)
      definitions.push_back({std::string(line.substr(0, tab)), std::string(line.substr(tab + 1))});
    begin = end + 1;
  }
  return definitions;
}

std::string FormatDefinitionLines(const std::vector<Definition>& definitions) {
  std::string out;
  for (const auto& d : definitions)
    out.append(d.short_form).append("\t").append(d.expansion).append("\n");
  return out;
}

std::vector<std::string> ListFolderEntries(const std::filesystem::path& folder) {
  std::vector<std::string> names;
  std::error_code error;
  for (std::filesystem::directory_iterator it(folder, error), end; !error && it != end;
       it.increment(error))
    names.push_back(it->path().filename().string());
  if (error && names.empty() && !std::filesystem::is_directory(folder, error)) return {};
  std::sort(names.begin(), names.end());
  names.insert(names.begin(), {".", ".."});
  return names;
}

StoreResult DefinitionStore::LoadFolder(const std::filesystem::path& folder) {
  std::vector<Entry> entries;
  std::string failures;
  // Status checks that cannot throw: an unreadable folder is a store that answers no.
  std::error_code error;
  if (!std::filesystem::is_directory(folder, error)) {
    std::unique_lock lock(mutex_);
    folder_ = folder;
    entries_.clear();
    RebuildIndex();
    return StoreResult::Failure(folder.string() + ": the definition folder is missing");
  }
  const auto names = ListFolderEntries(folder);
  for (const auto& name : names) {
    const auto path = folder / name;
    if (name == "." || name == ".." || !std::filesystem::is_regular_file(path, error)) continue;
    if (name.find(".tmp-") != std::string::npos)
      continue; // left behind by an interrupted save: the real file is intact beside it
    std::string bytes;
    if (auto read = ReadWholeFile(path, bytes); !read) {
      failures.append(failures.empty() ? "" : "; ").append(read.error);
      continue;
    }
    for (auto& d : ParseDefinitionLines(bytes)) {
      std::string key = LowerInternal(d.short_form);
      entries.push_back({std::move(d), std::move(key), name});
    }
  }
  std::unique_lock lock(mutex_);
  folder_ = folder;
  entries_ = std::move(entries);
  RebuildIndex();
  if (!failures.empty()) return StoreResult::Failure(failures);
  return StoreResult::Success();
}

std::optional<std::string> DefinitionStore::FindDefinition(std::string_view token) const {
  const std::string key = LowerInternal(token);
  std::shared_lock lock(mutex_);
  const auto found = first_entry_of_key_.find(std::string_view(key));
  if (found == first_entry_of_key_.end()) return std::nullopt;
  return entries_[found->second].definition.expansion;
}

bool DefinitionStore::Contains(std::string_view short_form) const {
  return FindDefinition(short_form).has_value();
}

std::vector<Definition> DefinitionStore::All() const {
  std::shared_lock lock(mutex_);
  std::vector<Definition> all;
  all.reserve(entries_.size());
  for (const auto& entry : entries_)
    all.push_back(entry.definition);
  return all;
}

std::size_t DefinitionStore::size() const {
  std::shared_lock lock(mutex_);
  return entries_.size();
}

StoreResult DefinitionStore::Add(std::string_view short_form, std::string_view expansion) {
  if (short_form.empty() || short_form.find_first_of("\t\r\n") != std::string_view::npos ||
      expansion.find_first_of("\r\n") != std::string_view::npos)
    return StoreResult::Failure("a definition needs a short form without tabs or line breaks "
                                "and an expansion on one line");
  std::unique_lock lock(mutex_);
  if (folder_.empty()) return StoreResult::Failure("no definition folder has been loaded");
  std::error_code error;
  std::filesystem::create_directories(folder_, error);
  if (error) return StoreResult::Failure(folder_.string() + ": " + error.message());
  const std::string file(kUserDefinitionFile);
  const auto path = folder_ / file;
  // Append to the file as it is on disk, so that lines this store does not understand stay.
  std::string bytes;
  if (std::filesystem::exists(path, error))
    if (auto read = ReadWholeFile(path, bytes); !read) return read;
  if (!bytes.empty() && bytes.back() != '\n') bytes.push_back('\n');
  Definition definition{std::string(short_form), std::string(expansion)};
  bytes += FormatDefinitionLines({definition});
  if (auto saved = ReplaceFileAtomically(path, bytes); !saved) return saved;
  entries_.push_back({std::move(definition), LowerInternal(short_form), file});
  first_entry_of_key_.emplace(entries_.back().key, entries_.size() - 1);
  return StoreResult::Success();
}

StoreResult DefinitionStore::Remove(std::string_view short_form) {
  const std::string key = LowerInternal(short_form);
  std::unique_lock lock(mutex_);
  std::vector<std::string> files;
  for (const auto& entry : entries_)
    if (entry.key == key && std::find(files.begin(), files.end(), entry.file) == files.end())
      files.push_back(entry.file);
  if (files.empty()) return StoreResult::Failure({});
  for (const auto& file : files) {
    if (auto saved = RewriteWithout(file, key); !saved)
      return saved; // the files rewritten so far stay rewritten, and so do their entries
    std::erase_if(entries_,
                  [&](const Entry& entry) { return entry.key == key && entry.file == file; });
    RebuildIndex();
  }
  return StoreResult::Success();
}

void DefinitionStore::RebuildIndex() {
  first_entry_of_key_.clear();
  for (std::size_t i = 0; i < entries_.size(); ++i)
    first_entry_of_key_.emplace(entries_[i].key, i); // an existing key keeps its first entry
}

StoreResult DefinitionStore::RewriteWithout(const std::string& file, const std::string& key) const {
  const auto path = folder_ / file;
  std::string bytes;
  if (auto read = ReadWholeFile(path, bytes); !read) return read;
  std::string kept;
  kept.reserve(bytes.size());
  std::size_t begin = 0;
  while (begin < bytes.size()) {
    std::size_t end = bytes.find('\n', begin);
    end = end == std::string::npos ? bytes.size() : end + 1;
    const std::string_view line(bytes.data() + begin, end - begin);
    const auto tab = line.find('\t');
    if (tab == std::string_view::npos || LowerInternal(line.substr(0, tab)) != key)
      kept.append(line);
    begin = end;
  }
  return ReplaceFileAtomically(path, kept);
}

} // namespace vntts

// SPDX-License-Identifier: MIT
#include "ui/folder_tree.h"

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <functional>

#include "audio/archive/key_case.h"
#include "ui/text_file.h"

namespace vntts::ui {
namespace {

bool IsFolder(const std::string& folder, const dirent& entry) {
  const std::string_view name = entry.d_name;
  if (name == "." || name == "..") return false;
  if (entry.d_type == DT_DIR) return true;
  if (entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN) return false;
  struct stat st {};
  return ::stat((folder + entry.d_name).c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

// Calls found with each sub-folder's name until it returns false.
void ForEachSubFolder(const std::string& folder, const std::function<bool(const char*)>& found) {
  DIR* dir = ::opendir(folder.c_str());
  if (!dir) return;
  while (const dirent* entry = ::readdir(dir))
    if (IsFolder(folder, *entry) && !found(entry->d_name)) break;
  ::closedir(dir);
}

std::string WithSlash(std::string path) {
  if (path.empty() || path.back() != '/') path.push_back('/');
  return path;
}

} // namespace

std::vector<std::string> SubFolders(const std::string& folder) {
  std::vector<std::string> names;
  ForEachSubFolder(WithSlash(folder), [&](const char* name) {
    names.emplace_back(name);
    return true;
  });
  std::sort(names.begin(), names.end(), [](const std::string& a, const std::string& b) {
    const std::string la = LowerKey(a), lb = LowerKey(b);
    return la != lb ? la < lb : a < b;
  });
  return names;
}

bool HasSubFolder(const std::string& folder) {
  bool any = false;
  ForEachSubFolder(WithSlash(folder), [&](const char*) {
    any = true;
    return false;
  });
  return any;
}

int FolderTree::Insert(int parent, const std::string& label, const std::string& path) {
  const int item = view_.InsertTreeItem(tree_, parent, Utf8ToWindowText(label), HasSubFolder(path));
  if (item > 0) folders_[item] = {path, false};
  return item;
}

void FolderTree::Fill(const std::string& home) {
  Insert(0, "/", "/");
  if (!home.empty() && home != "/") Insert(0, home, WithSlash(home));
}

void FolderTree::OnExpanding(int item) {
  const auto found = folders_.find(item);
  if (found == folders_.end() || found->second.listed) return;
  found->second.listed = true;
  const std::string path = found->second.path;
  const std::vector<std::string> names = SubFolders(path);
  for (const std::string& name : names)
    Insert(item, name, path + name + "/");
  if (names.empty()) view_.SetTreeItemExpandable(tree_, item, false);
}

std::string FolderTree::SelectedPath() const {
  const auto found = folders_.find(view_.SelectedTreeItem(tree_));
  return found == folders_.end() ? std::string() : found->second.path;
}

} // namespace vntts::ui

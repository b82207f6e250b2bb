// The files of the sample data, which other programs wrote, through the file object.
#include <gtest/gtest.h>
#include <vrelio/container/bf_file.h>
#include <vrelio/foundation/data_type.h>
#include <vrelio/foundation/error.h>

#include <QByteArray>
#include <QCryptographicHash>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <filesystem>
#include <string>
#include <vector>

#include "support/source_tree.h"

namespace {

namespace fs = std::filesystem;
using stack_ptr = boost::shared_ptr<VBFStackInterface>;

std::vector<fs::path> files_of(const std::string& kind) {
  const fs::path path = fs::path(Vrel::testing::sample_data_folder()) / "vbf" / kind;
  std::vector<fs::path> files;
  if (!fs::exists(path)) return files;
  for (const auto& entry : fs::directory_iterator(path)) {
    if (entry.path().extension() == ".vbf") files.push_back(entry.path());
  }
  return files;
}

QJsonObject json_of(const fs::path& path) {
  QFile file(QString::fromStdString(path.string()));
  EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path;
  return QJsonDocument::fromJson(file.readAll()).object();
}

// The lists have U+FFFD where a text is no UTF-8.
void expect_text(const std::string& text, const QJsonValue& expected) {
  const QString wanted = expected.toString();
  if (wanted.contains(QChar(0xFFFD))) return;
  EXPECT_EQ(text, wanted.toStdString());
}

std::string hash_of(const std::string& bytes) {
  const QByteArray data(bytes.data(), static_cast<qsizetype>(bytes.size()));
  return QCryptographicHash::hash(data, QCryptographicHash::Sha256).toHex().toStdString();
}

void expect_sizes(const stack_ptr& stack, const QJsonObject& expected) {
  std::vector<unsigned> sizes;
  for (const QJsonValue& size : expected["sizes"].toArray()) {
    sizes.push_back(static_cast<unsigned>(size.toDouble()));
  }
  EXPECT_EQ(stack->get_sizes(), sizes);
}

void expect_lengths(const std::vector<double>& lengths, const QJsonArray& expected) {
  for (std::size_t axis = 0; axis < lengths.size(); ++axis) {
    const QJsonValue value = expected[static_cast<qsizetype>(axis)];
    if (!value.isNull()) {
      EXPECT_EQ(lengths[axis], value.toDouble()) << axis;
    }
  }
}

void expect_description(const stack_ptr& stack, const QJsonObject& expected) {
  expect_text(stack->get_name(), expected["name"]);
  expect_text(stack->get_description(), expected["description"]);
  EXPECT_EQ(vrel_dt_get_name(stack->get_dt()), expected["data_type"].toString().toStdString());
  expect_sizes(stack, expected);
  expect_lengths(stack->get_lengths(), expected["lengths"].toArray());
  expect_lengths(stack->get_offsets(), expected["offsets"].toArray());
  expect_text(stack->get_meta_data_string(), expected["metadata"]);
  EXPECT_EQ(static_cast<qsizetype>(stack->get_tag_keys().size()),
            expected["tags"].toObject().size());
  EXPECT_EQ(stack->get_state(), 0);
}

void expect_samples(const stack_ptr& stack, const QJsonObject& expected) {
  std::string bytes(stack->get_size(0), '?');
  ASSERT_EQ(bytes.size(), static_cast<std::size_t>(expected["bytes"].toDouble()));
  stack->read(stack->get_dt(), bytes.data(), nullptr);
  EXPECT_EQ(hash_of(bytes), expected["sha256"].toString().toStdString());
}

void expect_file(const fs::path& path) {
  const QJsonObject json = json_of(fs::path(path).replace_extension(".json"));
  const QJsonObject info = json["info"].toObject();
  VBFFile file(path.wstring(), VFile::mode_read);
  std::string description;
  file->get_description(description);
  expect_text(description, info["description"]);
  const QJsonArray stacks = info["stacks"].toArray();
  ASSERT_EQ(static_cast<qsizetype>(file->get_number_of_stacks()), stacks.size());
  const QJsonArray samples = json["samples"].toArray();
  for (unsigned i = 0; i < file->get_number_of_stacks(); ++i) {
    SCOPED_TRACE("stack " + std::to_string(i));
    const stack_ptr stack = file->get_stack(i);
    expect_description(stack, stacks[i].toObject());
    if (samples[i].isObject()) expect_samples(stack, samples[i].toObject());
  }
}

TEST(BFSampleDataTest, GoodFilesAreReadAsTheirListsTell) {
  const std::vector<fs::path> files = files_of("good");
  if (files.empty()) GTEST_SKIP() << "no sample data";
  for (const fs::path& path : files) {
    SCOPED_TRACE(path.filename().string());
    EXPECT_NO_THROW(expect_file(path));
  }
}

// A few samples of each stack, whatever the sizes say.
void read_some(VBFFileInterface& file) {
  for (unsigned i = 0; i < file.get_number_of_stacks(); ++i) {
    const stack_ptr stack = file.get_stack(i);
    int position = 0;
    std::string samples(1000 * 16, '\0');
    stack->read(stack->get_dt(), samples.data(), nullptr, 1000, position);
  }
}

// What is raised for a bad file; empty for nothing.
std::string failure_of(const fs::path& path) {
  try {
    VBFFile file(path.wstring(), VFile::mode_read);
    read_some(*file.shared());
  } catch (const VrelError& error) {
    return error.get_msg();
  }
  return std::string();
}

TEST(BFSampleDataTest, BadFilesAreReadOrRefusedWithTheirMessage) {
  const std::vector<fs::path> files = files_of("bad");
  if (files.empty()) GTEST_SKIP() << "no sample data";
  const QJsonObject manifest = json_of(files.front().parent_path() / "manifest.json");
  for (const fs::path& path : files) {
    SCOPED_TRACE(path.filename().string());
    const QJsonObject expected = manifest[QString::fromStdString(path.stem().string())].toObject();
    const std::string message = failure_of(path);
    if (expected["message"].isString() && expected["command"].toString() == "info") {
      EXPECT_EQ(message, expected["message"].toString().toStdString());
    }
    if (expected["exit"].toInt() == 4 && expected["command"].toString() == "info") {
      EXPECT_NE(message, "");
    }
  }
}

}  // namespace

#include "companion/sentence_file.h"

#include <gtest/gtest.h>
#include <unistd.h>
#include <zlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include "companion/errors.h"
#include "companion/sentence_file_writer.h"
#include "tests/support/random.h"
#include "tests/support/temporary_folder.h"

namespace colx {
namespace {

const std::string header = "# ngrex sentences 1\n";

std::string _content_of(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

bool _nothing(std::string_view) {
  return false;
}

// The message with which a function fails; empty: it does not.
template <typename Function>
std::string _complaint(const Function& function) {
  try {
    function();
  } catch (const input_error& error) {
    return error.what();
  }
  return "";
}

TEST(SentenceRecord, IsALineWhateverItsTextsAre) {
  std::string lines;
  append_sentence_record(lines, {"d.dat", 17, 5, "in\tput", 40, "a\nb", std::string_view("x\t\r\n\0y\xFFz\x7F", 9)});
  EXPECT_EQ(lines, "d.dat\t17\t5\tin put\t40\ta b\tx    y\xEF\xBF\xBDz \n");
  SentenceRecord record;
  EXPECT_EQ(parse_sentence_record(std::string_view(lines).substr(0, lines.size() - 1), record), "");
  const SentenceRecord expected{"d.dat", 17, 5, "in put", 40, "a b", "x    y\xEF\xBF\xBDz "};
  EXPECT_EQ(record, expected);
}

TEST(SentenceRecord, LeavesOutWhatIsTooLong) {
  std::string lines;
  append_sentence_record(
      lines, {"d", 1, 1, "s", 1, std::string(longest_sentence_text, 'i'), std::string(longest_sentence_text + 1, 't')});
  EXPECT_EQ(lines, "d\t1\t1\ts\t1\t" + std::string(longest_sentence_text, 'i') + "\t\n");
}

TEST(SentenceRecord, SaysWhatIsWrong) {
  SentenceRecord record;
  EXPECT_EQ(parse_sentence_record("", record), "expected 7 fields separated by TAB, found 1");
  EXPECT_EQ(parse_sentence_record("d\t1\t1\ts\t1\ti\tt\tx", record), "expected 7 fields separated by TAB, found 8");
  EXPECT_EQ(parse_sentence_record("d\t0\t1\ts\t1\ti\tt", record), "expected a number from 1 as line, found \"0\"");
  EXPECT_EQ(parse_sentence_record("d\t1\t-1\ts\t1\ti\tt", record),
            "expected a number from 1 as number of words, found \"-1\"");
  EXPECT_EQ(parse_sentence_record("d\t1\t1\ts\t1x\ti\tt", record),
            "expected a number from 1 as line of treebank, found \"1x\"");
  EXPECT_EQ(parse_sentence_record("\t1\t1\ts\t1\ti\tt", record), "expected the path of a datafile, found nothing");
  EXPECT_EQ(parse_sentence_record("d\t1\t1\t\t1\t\t", record), "");
}

TEST(SentenceFile, FindsSentencesInAnyOrder) {
  const test::TemporaryFolder folder;
  SentenceFile file(folder.write("s", header + "b\t1\t2\tt\t5\tb1\tB 1\nb\t4\t1\tt\t9\tb2\t\na\t1\t3\tu\t1\ta1\tA\n"));
  ASSERT_EQ(file.datafiles().size(), 2U);
  EXPECT_EQ(file.datafiles()[0].path, "b");
  EXPECT_EQ(file.datafiles()[0].sentences, 2U);
  const auto a = file.datafile("a", "x/a");
  const auto b = file.datafile("./b", "b");
  ASSERT_EQ(a, 1U);
  ASSERT_EQ(b, 0U);
  EXPECT_FALSE(file.datafile("c", "c").has_value());
  EXPECT_EQ(file.find(*a, 1, 3).id, "a1");
  EXPECT_EQ(file.find(*b, 4, 1).id, "b2");
  EXPECT_EQ(file.find(*b, 4, 1).source_line, 9U);
  EXPECT_EQ(file.find(*b, 1, 2).text, "B 1");
  EXPECT_EQ(file.find(*a, 1, 3).source, "u");
}

TEST(SentenceFile, KnowsADatafileUnderAnotherName) {
  const test::TemporaryFolder folder;
  const std::string datafile = folder.write("words.dat", "");
  const std::string other = folder.path() + "/./words.dat";
  SentenceFile file(folder.write("s", header + datafile + "\t1\t2\tt\t5\t\t\n"));
  EXPECT_EQ(file.datafile(other, other), 0U);
  EXPECT_FALSE(file.datafile("s", folder.path("s")).has_value());
}

TEST(SentenceFile, SaysWhatDoesNotFit) {
  const test::TemporaryFolder folder;
  const std::string path = folder.write("s", header + "b\t1\t2\tt\t5\t\t\nb\t4\t1\tt\t9\t\t\na\t1\t3\tu\t1\t\t\n");
  SentenceFile file(path);
  const auto complaint = [&](std::size_t datafile, std::uint64_t line, std::uint64_t words) {
    return _complaint([&] { file.find(datafile, line, words); });
  };
  const std::string end = "; the file was not made together with this datafile";
  EXPECT_EQ(complaint(0, 1, 3),
            path + ": line 2: expected a sentence of 3 words at line 1 of b, found one of 2 at line 1" + end);
  EXPECT_EQ(complaint(0, 3, 1),
            path + ": line 3: expected a sentence of 1 word at line 3 of b, found one of 1 at line 4" + end);
  EXPECT_EQ(complaint(0, 9, 1),
            path + ": line 4: expected a sentence of 1 word at line 9 of b, found none there or behind it" + end);
  EXPECT_EQ(complaint(1, 7, 2),
            path + ": line 5: expected a sentence of 2 words at line 7 of a, found none there or behind it" + end);
  EXPECT_EQ(complaint(0, 4, 1), "");
}

TEST(SentenceFile, RefusesWhatIsMalformed) {
  const test::TemporaryFolder folder;
  const auto complaint = [&](const std::string& content) {
    const std::string path = folder.write("s", content);
    const std::string text = _complaint([&] { const SentenceFile file(path); });
    return text.starts_with(path + ": ") ? text.substr(path.size() + 2) : text;
  };
  const std::string begins = "expected \"# ngrex sentences 1\", with which a sentence file begins, found ";
  EXPECT_EQ(complaint(""), "line 1: " + begins + "\"\"");
  EXPECT_EQ(complaint("# ngrex sentences 2\n"), "line 1: " + begins + "\"# ngrex sentences 2\"");
  EXPECT_EQ(complaint(header), "");
  EXPECT_EQ(complaint(header + "\n"), "line 2: expected 7 fields separated by TAB, found 1");
  EXPECT_EQ(complaint(header + "a\t1\t1\t\t1\t\t"), "line 2: the file ends within this line");
  EXPECT_EQ(complaint(header + "a\t4\t1\t\t1\t\t\na\t4\t1\t\t1\t\t\n"),
            "line 3: expected a sentence behind line 4 of a, found one at line 4");
  EXPECT_EQ(complaint(header + "a\t1\t1\t\t1\t\t\nb\t1\t1\t\t1\t\t\na\t3\t1\t\t1\t\t\n"),
            "line 4: expected the sentences of a datafile together, found more of a");
  EXPECT_EQ(complaint(header + std::string(longest_sentence_line + (1U << 20), 'x')),
            "line 2: expected a sentence, found a line of more than 4 MiB");
}

TEST(SentenceFile, RefusesAPipe) {
  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  ASSERT_EQ(::write(ends[1], header.data(), header.size()), static_cast<ssize_t>(header.size()));
  ::close(ends[1]);
  const std::string path = "/dev/fd/" + std::to_string(ends[0]);
  EXPECT_EQ(_complaint([&] { const SentenceFile file(path); }), path + ": cannot be read again: Illegal seek");
  ::close(ends[0]);
}

// Files large enough that there are several places to begin from, with lines that are longer than the buffer.
TEST(SentenceFile, FindsEverySentenceOfALargeFileCompressedOrNot) {
  test::Random random;
  const test::TemporaryFolder folder;
  struct Sentence {
    std::size_t datafile;
    std::uint64_t line;
    std::uint64_t words;
    std::string text;
  };
  std::vector<Sentence> sentences;
  SentenceFileWriter writer(folder.path("s"), _nothing);
  for (std::size_t datafile = 0; datafile < 3; ++datafile) {
    std::uint64_t line = 1;
    for (int i = 0; i < 200; ++i) {
      const std::uint64_t words = 1 + random.below(30);
      const std::size_t size = random.once_in(50) ? 100000 + random.below(100000) : random.below(2000);
      sentences.push_back({datafile, line, words, std::string(size, static_cast<char>('a' + random.below(26)))});
      writer.add({"d" + std::to_string(datafile), line, words, "t", line, "", sentences.back().text});
      line += words + 1;
    }
  }
  writer.commit();
  const std::string content = _content_of(folder.path("s"));
  const gzFile compressed = gzopen(folder.path("z").c_str(), "wb1");
  ASSERT_EQ(gzwrite(compressed, content.data(), static_cast<unsigned>(content.size())), content.size());
  ASSERT_EQ(gzclose(compressed), Z_OK);
  for (const char* const name : {"s", "z"}) {
    SentenceFile file(folder.path(name));
    for (const Sentence& sentence : sentences)
      EXPECT_EQ(file.find(sentence.datafile, sentence.line, sentence.words).text, sentence.text);
    for (int i = 0; i < 40; ++i) {
      const Sentence& sentence = sentences[random.below(static_cast<std::uint32_t>(sentences.size()))];
      EXPECT_EQ(file.find(sentence.datafile, sentence.line, sentence.words).text, sentence.text);
    }
    file.rewind();
    SentenceRecord record;
    for (const Sentence& sentence : sentences) {
      ASSERT_TRUE(file.next(record));
      EXPECT_EQ(record.text, sentence.text);
    }
    EXPECT_FALSE(file.next(record));
  }
}

TEST(SentenceFileWriter, KeepsWhatItSaysOfOtherDatafiles) {
  const test::TemporaryFolder folder;
  const std::string path = folder.write("s", header + "a\t1\t1\tt\t1\t\told\nb\t1\t1\tt\t1\t\tB\n");
  SentenceFileWriter writer(path, [](std::string_view datafile) { return datafile == "a"; });
  writer.add({"a", 1, 2, "t", 1, "", "new"});
  writer.commit();
  EXPECT_EQ(_content_of(path), header + "b\t1\t1\tt\t1\t\tB\na\t1\t2\tt\t1\t\tnew\n");
}

TEST(SentenceFileWriter, RefusesToReplaceAnythingElse) {
  const test::TemporaryFolder folder;
  const std::string path = folder.write("s", "words");
  EXPECT_THROW(SentenceFileWriter(path, _nothing), input_error);
  EXPECT_EQ(_content_of(path), "words");
  EXPECT_THROW(SentenceFileWriter(folder.path("no/s"), _nothing), output_error);
  SentenceFileWriter(folder.write("empty", ""), _nothing).commit();
  EXPECT_EQ(_content_of(folder.path("empty")), header);
}

}  // namespace
}  // namespace colx

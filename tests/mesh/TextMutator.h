// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cctype>
#include <cstddef>
#include <random>
#include <string>
#include <vector>

namespace meshtest {

/// Damages texts, by the same random numbers on every machine.
class TextMutator {
public:
  explicit TextMutator(std::uint32_t seed)
      : m_random(seed) {}

  /// One to three damages: the text cut, a byte changed, a word left out, doubled, exchanged with another, or a number
  /// replaced by one of another kind.
  std::string damage(std::string text) {
    for (std::size_t n = 1 + below(3); n > 0 && !text.empty(); --n)
      damageOnce(text);
    return text;
  }

private:
  struct Word {
    std::size_t begin;
    std::size_t size;
  };

  std::size_t below(std::size_t end) { return m_random() % end; }

  static std::vector<Word> wordsOf(const std::string& text) {
    const auto isPart = [&text](std::size_t at) {
      const char c = text[at];
      return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '.' || c == '-' || c == '+' || c == '_' ||
             c == '*';
    };
    std::vector<Word> words;
    for (std::size_t at = 0; at < text.size(); ++at) {
      if (!isPart(at)) continue;
      const std::size_t begin = at;
      while (at < text.size() && isPart(at))
        ++at;
      words.push_back({begin, at - begin});
    }
    return words;
  }

  static bool isNumber(const std::string& text, const Word& word) {
    return text.find_first_not_of("0123456789.+-", word.begin) >= word.begin + word.size;
  }

  void damageOnce(std::string& text) {
    const std::size_t kind = below(12);
    if (kind == 0) return text.resize(below(text.size()));
    if (kind == 1) {
      text[below(text.size())] ^= static_cast<char>(1 + below(255));
      return;
    }
    const std::vector<Word> words = wordsOf(text);
    if (words.empty()) return;
    const Word word = words[below(words.size())];
    if (kind == 2) {
      text.erase(word.begin, word.size);
    } else if (kind == 3) {
      text.insert(word.begin, text.substr(word.begin, word.size) + " ");
    } else if (kind == 4) {
      const Word other = words[below(words.size())];
      const Word& first = word.begin < other.begin ? word : other;
      const Word& second = word.begin < other.begin ? other : word;
      const std::string kept = text.substr(first.begin, first.size);
      const std::string moved = text.substr(second.begin, second.size);
      text.replace(second.begin, second.size, kept);
      text.replace(first.begin, first.size, moved);
    } else {
      replaceNumber(text, words);
    }
  }

  void replaceNumber(std::string& text, const std::vector<Word>& words) {
    static constexpr const char* others[] = {"-1",         "0",           "1",   "3",    "9",    "255",
                                             "2147483647", "99999999999", "nan", "-0.5", "1e400"};
    std::vector<Word> numbers;
    for (const Word& word : words) {
      if (isNumber(text, word)) numbers.push_back(word);
    }
    if (numbers.empty()) return;
    const Word word = numbers[below(numbers.size())];
    text.replace(word.begin, word.size, others[below(std::size(others))]);
  }

  std::mt19937 m_random;
};

} // namespace meshtest

// The reader of exchange files beside a plain model of it.
// The model makes a list of tokens of each piece and walks over them one by one, as slowly and as
// simply as it can be said; thousands of documents, many of them broken, must tell the same.
// Leans on xml_support.
#include <gtest/gtest.h>

#include <deque>
#include <random>
#include <vector>

#include "Library/xml/xml_support.h"
#include "support/hearing.h"

namespace clxml::testing {
namespace {

class Model {
 public:
  Model (std::string text, std::size_t pieceLength)
      : document (std::move (text)), piece (pieceLength) {}

  std::string Told (int levels) {
    std::string told;
    auto Tell = [&] (const std::string& what) {
      told += what + " " + std::to_string (read * 100 / document.size ()) + "%\n";
    };
    bool isClean = false;
    try {
      if (document.substr (0, std::min<std::size_t> (piece, 5)) != "<?xml") return "not opened\n";
      ReadPiece ();
      Tell ("opened");
      std::string shown;
      std::vector<std::string> entered;
      for (int i = 0; i < levels; i++) {
        shown = depth == static_cast<int> (entered.size ()) - 1 ? Enter (entered) : "null";
        if (static_cast<int> (entered.size ()) == i) entered.emplace_back ();
      }
      if (levels > 0) Tell ("in " + shown);
      for (;;) {
        std::string element;
        if (depth < levels - 1 || !Next (element)) break;
        Tell (element);
      }
      Tell ("no more");
      for (int i = levels - 1; i >= 0; i--) {
        if (depth != i) continue;
        for (std::string rest; Next (rest);) continue;
        EndTag (entered[static_cast<std::size_t> (i)]);
        depth--;
      }
      if (levels > 0) Tell ("out null");
      SkipMarkup ();
      isClean = depth == -1 && Current ().type == End;
    } catch (const std::string& text) {
      // What stands behind the root is looked at when it is closed, where nothing is thrown.
      if (!told.ends_with ("%\n") || told.find ("out null") == std::string::npos)
        told += "thrown: " + text + "\n";
    }
    return told + (isClean ? "clean\n" : "unclean\n");
  }

 private:
  enum Type { Character, Space, Identifier, Literal, End };
  struct Token {
    Type type;
    std::string text;
  };

  void Add (Type type, const std::string& text) {
    if (type != Space || tokens.empty () || tokens.back ().type != Space)
      tokens.push_back ({type, text});
  }

  void ReadPiece () {
    std::string line;
    while (read < document.size () && line.size () < piece) {
      line += document[read++];
      if (line.back () == '\n') break;
    }
    if (line.find ('\0') != std::string::npos) throw std::string ("unexpected zero byte");
    while (!line.empty ()) {
      if (std::string_view ("\n\r\t ").find (line[0]) != std::string::npos) {
        Add (Space, " ");
        line.erase (0, line.find_first_not_of ("\n\r\t "));
      } else if (line[0] == '&') {
        const std::size_t semicolon = line.find (';');
        if (semicolon == std::string::npos) throw "ampersand sequence needs semicolon: " + line;
        Add (Literal, Decoded (line.substr (0, semicolon + 1)));
        line.erase (0, semicolon + 1);
      } else if (std::string_view ("<>=/!?\"").find (line[0]) != std::string::npos) {
        Add (Character, line.substr (0, 1));
        line.erase (0, 1);
      } else {
        std::size_t n = 0;
        while (n < line.size () && (isalnum (static_cast<unsigned char> (line[n])) ||
                                    line[n] == '_' || line[n] == '-' || line[n] == '.'))
          n++;
        Add (n > 0 ? Identifier : Literal, line.substr (0, std::max<std::size_t> (n, 1)));
        line.erase (0, std::max<std::size_t> (n, 1));
      }
    }
    Add (Space, " ");
  }

  static std::string Decoded (const std::string& reference) {
    if (reference[1] != '#') {
      const std::pair<const char*, const char*> names[] = {
          {"&amp;", "&"}, {"&lt;", "<"}, {"&gt;", ">"}, {"&apos;", "'"}, {"&quot;", "\""}};
      for (auto [name, text] : names)
        if (reference == name) return text;
      throw "unrecognised ampersand sequence: " + reference;
    }
    unsigned value = 0;
    if (reference[2] == 'x' || reference[2] == 'X') {
      for (std::size_t i = 3; reference[i] != ';'; i++) {
        if (!isxdigit (static_cast<unsigned char> (reference[i])))
          throw "badly formed hex reference: " + reference;
        value =
            value * 16 + static_cast<unsigned> (std::stoi (reference.substr (i, 1), nullptr, 16));
      }
    } else {
      value = static_cast<unsigned> (atoi (reference.c_str () + 2));
    }
    return (value & 255) == 0 ? "" : std::string (1, static_cast<char> (value & 255));
  }

  const Token& Peek (std::size_t distance) {
    while (current + distance >= tokens.size ()) {
      if (read < document.size ())
        ReadPiece ();
      else
        tokens.push_back ({End, ""});
    }
    return tokens[current + distance];
  }
  const Token& Current () { return Peek (0); }
  bool Is (std::size_t distance, const char* character) {
    return Peek (distance).type == Character && tokens[current + distance].text == character;
  }
  std::string Take () {
    std::string text = Current ().text;
    current++;
    return text;
  }
  [[noreturn]] void Unexpected () {
    const char* names[] = {"", "white space", "an identifier", "a literal", "end-of-file"};
    const Token& token = Current ();
    throw "unexpected " + (token.type == Character ? token.text : names[token.type]);
  }
  void SkipSpace () {
    if (Current ().type == Space) current++;
  }
  void Expect (const char* character) {
    SkipSpace ();
    if (!Is (0, character)) Unexpected ();
    current++;
  }

  void SkipMarkup () {
    for (;;) {
      SkipSpace ();
      if (!Is (0, "<") || !(Is (1, "?") || Is (1, "!"))) return;
      while (!Is (0, ">")) {
        if (Current ().type == End) Unexpected ();
        current++;
      }
      current++;
    }
  }

  static std::string Trimmed (std::string text) {
    text.erase (0, std::min (text.find_first_not_of (' '), text.size ()));
    text.erase (text.find_last_not_of (' ') + 1);
    return text;
  }

  // The start tag as it is shown, its name apart; true when the element goes on.
  bool StartTag (std::string& name, std::string& shown) {
    Expect ("<");
    name = Take ();
    std::string attributes;
    for (;;) {
      SkipSpace ();
      if (Is (0, "/") || Is (0, ">")) break;
      if (Current ().type == End) Unexpected ();
      if (Current ().type != Identifier) throw std::string ("unexpected syntax");
      attributes += (attributes.empty () ? "" : " ") + Take ();
      if (Current ().text == ":") {
        attributes += Take ();
        if (Current ().type != Identifier) throw std::string ("unexpected syntax");
        attributes += Take ();
      }
      Expect ("=");
      Expect ("\"");
      std::string value;
      while (!Is (0, "\"")) {
        if (Current ().type == End) Unexpected ();
        value += Take ();
      }
      current++;
      attributes += "=\"" + Trimmed (value) + "\"";
    }
    shown = name + (attributes.empty () ? "" : "{" + attributes + "}");
    if (!Is (0, "/")) {
      current++;
      return true;
    }
    current++;
    Expect (">");
    return false;
  }

  void EndTag (const std::string& name) {
    Expect ("<");
    Expect ("/");
    const std::string found = Take ();
    if (found != name) throw "closing tag mismatch: " + name + " vs " + found;
    Expect (">");
  }

  bool Next (std::string& shown) {
    SkipMarkup ();
    if (depth == -1 && Current ().type == End) return false;
    if (Is (0, "<") && Is (1, "/")) return false;
    if (++depth >= xml_MaximumNesting) throw std::string ("elements are nested too deep");
    std::string name, text, children;
    if (StartTag (name, shown)) {
      for (;;) {
        if (!Is (0, "<")) {
          if (Current ().type == End) Unexpected ();
          text += Take ();
        } else if (Is (1, "/")) {
          break;
        } else {
          std::string child;
          if (Next (child)) children += " " + child;
        }
      }
      EndTag (name);
      text = Trimmed (text);
      if (!text.empty ()) shown += "'" + text + "'";
      if (!children.empty ()) shown += "[" + children.substr (1) + "]";
    }
    depth--;
    return true;
  }

  std::string Enter (std::vector<std::string>& entered) {
    SkipMarkup ();
    if ((depth == -1 && Current ().type == End) || (Is (0, "<") && Is (1, "/"))) return "null";
    std::string name, shown, text;
    const bool isOpen = StartTag (name, shown);
    entered.push_back (name);
    if (!isOpen) return shown;
    depth++;
    while (!Is (0, "<")) {
      if (Current ().type == End) Unexpected ();
      text += Take ();
    }
    if (!Is (1, "/")) return shown;
    EndTag (name);
    depth--;
    text = Trimmed (text);
    return text.empty () ? shown : shown + "'" + text + "'";
  }

  std::string document;
  std::size_t piece;
  std::size_t read = 0;
  std::deque<Token> tokens;
  std::size_t current = 0;
  int depth = -1;
};

// Makes documents that are nearly well formed.
class Writer {
 public:
  explicit Writer (uint32_t seed) : random (seed) {}

  std::string Document () {
    std::string text = "<?xml version=\"1.0\"?>" + Space ();
    while (Chance (4)) text += Markup () + Space ();
    text += Element (0) + Space ();
    if (Chance (6)) text += Pick ({"<!-- end -->", "</b>", "x", "<b/>", "<!", "&", "&#65;"});
    for (int changes = Chance (2) ? 0 : Number (4); changes > 0; changes--) Change (text);
    return text;
  }
  int Number (int n) { return std::uniform_int_distribution (0, n - 1) (random); }
  bool Chance (int oneIn) { return Number (oneIn) == 0; }

 private:
  std::string Pick (std::vector<std::string> choice) {
    return choice[static_cast<std::size_t> (Number (static_cast<int> (choice.size ())))];
  }
  std::string Space () {
    return Chance (2) ? Pick ({"\n", "\n  ", " ", "\r\n", "\t", "\n\n\n", "          "}) : "";
  }
  std::string Markup () {
    return Pick ({"<!-- c -->", "<?p q?>", "<!>", "<!-- \n\n x -->", "<!-- &#62;> -->"});
  }
  std::string Name () {
    return Pick ({"a", "b", "North", "Long.name-of_it", "DATABASE_PointRecord"});
  }
  std::string Text () {
    return Pick ({"1234.5678", "x", "  y z ", "&amp;", "&#0;", "&#x20;", "&#32;x", "\xC3\xA9", ">",
                  "a\nb", "\"", "= ", "long words in a text", "&#233;", "'", "-&#3\n2;", "\v"});
  }
  std::string Attribute () {
    return Space () + " " + Pick ({"b", "version", "xsi:type", "q&#58;r"}) +
           (Chance (5) ? Space () : "") + "=" + (Chance (5) ? Space () : "") + "\"" +
           (Chance (2) ? Text () : "") + (Chance (4) ? Space () + "<>" : "") + "\"";
  }
  std::string Element (int depth) {
    const std::string name = Chance (30) ? Pick ({"=", "&#97;", " ", "&#0;", "\""}) : Name ();
    std::string text = "<" + name;
    while (Chance (3)) text += Attribute ();
    if (Chance (8)) return text + Space () + "/>";
    text += Space () + ">";
    for (int parts = Number (depth > 4 ? 2 : 5); parts > 0; parts--) {
      switch (Number (6)) {
        case 0:
          text += Text ();
          break;
        case 1:
          text += Markup () + Space ();
          break;
        case 2:
          text += Space ();
          break;
        case 3:
          text += Space () + Text () + Space ();
          break;
        default:
          text += Element (depth + 1);
      }
    }
    return text + "</" + name + (Chance (9) ? Space () : "") + ">";
  }
  void Change (std::string& text) {
    const std::size_t at = static_cast<std::size_t> (Number (static_cast<int> (text.size ())));
    switch (Number (5)) {
      case 0:
        text.erase (at, 1);
        break;
      case 1:
        text.insert (at, Pick ({"<", ">", "/", "&", ";", "\"", "=", " ", "\n", "</a>", "&#;"}));
        break;
      case 2:
        text[at] = static_cast<char> (Number (256));
        break;
      case 3:
        text.insert (at, text.substr (at, static_cast<std::size_t> (Number (20))));
        break;
      default:
        text.erase (at);
        break;
    }
    if (text.empty ()) text = "<";
  }

  std::mt19937 random;
};

TEST (XmlParserModel, TellsTheSameAsAPlainReading) {
  constexpr uint32_t firstSeed = 1;
  int clean = 0, thrown = 0;
  for (uint32_t seed = firstSeed; seed < firstSeed + 8000; seed++) {
    Hearing hearing;
    Writer writer (seed);
    const std::string document = writer.Document ();
    const int levels = writer.Number (4);
    xml_sizes sizes;
    if (writer.Chance (2)) sizes.piece = static_cast<std::size_t> (5 + writer.Number (60));
    if (writer.Chance (2))
      sizes.block = sizes.piece + 1 + static_cast<std::size_t> (writer.Number (30));
    const std::string told = Told (document, levels, sizes);
    ASSERT_EQ (told, Model (document, sizes.piece).Told (levels))
        << "seed " << seed << ", levels " << levels << ", piece " << sizes.piece << ", block "
        << sizes.block << "\n"
        << document;
    hearing.TakeAssertions ();
    if (told.ends_with ("\nclean\n")) clean++;
    if (told.find ("thrown: ") != std::string::npos) thrown++;
  }
  // Both kinds must be there in numbers, or the writer writes nothing worth comparing.
  EXPECT_GT (clean, 1500);
  EXPECT_GT (thrown, 1500);
}

}  // namespace
}  // namespace clxml::testing

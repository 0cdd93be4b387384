// Dump then insert on generated images of every pointer form: an unchanged
// script puts every byte back; translated strings read back through their
// pointers as written; a script that does not fit changes nothing.
#include <gtest/gtest.h>

#include <cstring>
#include <random>

#include "core/rom_slots.h"
#include "script/game_image.h"
#include "script/pointer_form.h"
#include "script/script_document_reader.h"
#include "script/script_document_writer.h"
#include "script/script_extraction.h"
#include "script/script_placement.h"
#include "table/font_set.h"
#include "table/text_decoder.h"
#include "table/text_encoder.h"

namespace {

// The game table, with DTE entries, a control code with a parameter byte and
// a second terminal; 0x01 stays unknown (a raw byte in scripts).
std::string RichTable() { return GameTable() + "80=th\n81=e \n82=the\n$05=1\n/FD\n"; }

// A random string of bytes the game could hold.
Bytes RandomString(std::mt19937& random) {
    static const Bytes pieces = {'a', 'b', 'e', 'h', 't', ' ', ';', '[', '<', '_', '$', '>', 'Z', 0x80, 0x81, 0x82,
                                 0xFE, 0x01};
    Bytes bytes;
    const int length = static_cast<int>(random() % 12);
    for (int i = 0; i < length; ++i) {
        bytes.push_back(pieces[random() % pieces.size()]);
        if (random() % 10 == 0) bytes.insert(bytes.end(), {0x05, static_cast<unsigned char>(random())});
    }
    bytes.push_back(random() % 5 == 0 ? 0xFD : 0xFF);
    return bytes;
}

// The forms the tests cover: each writes its pointers at `at` for the
// string offsets given.
struct FormCase {
    const char* name;
    PointerForm form;
};

PointerForm Form(int size, int table, int base = 0, int map = POINTER_MAP_NONE, int stride = 0, bool big = false) {
    PointerForm form = PlainPointerForm(size, table);
    form.base = base;
    form.map = map;
    form.stride = stride;
    form.bigEndian = big;
    return form;
}

PointerForm Split(int low, int high, int bank, int map = POINTER_MAP_NONE) {
    PointerForm form = PlainPointerForm(0, -1);
    form.low = low;
    form.high = high;
    form.bank = bank;
    form.map = map;
    return form;
}

std::vector<FormCase> TableForms() {
    return {{"nes", Form(2, 0x200, -0x6000)},
            {"big endian", Form(2, 0x200, -0x8000, POINTER_MAP_NONE, 0, true)},
            {"stride", Form(2, 0x200, -0x6000, POINTER_MAP_NONE, 5)},
            {"one byte", Form(1, 0x200, 0x2000)},
            {"four bytes", Form(4, 0x200)},
            {"lorom", Form(3, 0x200, 0, POINTER_MAP_LOROM)},
            {"hirom", Form(3, 0x200, 0, POINTER_MAP_HIROM)},
            {"split", Split(0x200, 0x400, -1)},
            {"split bank", Split(0x200, 0x400, 0x600, POINTER_MAP_HIROM)}};
}

void PutPointer(GameImage& image, const PointerForm& form, const PointerPlace& place, int64_t target) {
    std::optional<uint32_t> value = ValueForTarget(form, target, 0);
    ASSERT_TRUE(value) << target;
    for (int i = 0; i < place.size; ++i) image.bytes.at(place.byteAt[i]) = static_cast<unsigned char>(*value >> 8 * i);
}

// Strings per image: few enough for one-byte pointers.
int StringsFor(const PointerForm& form) { return form.size == 1 ? 14 : 40; }

class ScriptRoundTripTest : public GameTest {
protected:
    void SetUp() override {
        GameTest::SetUp();
        WriteFile(dir / "rich.tbl", RichTable());
        ResetFontSet();
        ASSERT_EQ(Trelvane_LoadFont((dir / "rich.tbl").c_str()), 1);
    }

    // Strings from 0x2000 in random order behind their pointers, with
    // repeated entries and entries at a shared tail; the table's targets.
    std::vector<int64_t> PutStrings(GameImage& image, std::mt19937& random, int count) {
        std::vector<int64_t> offsets;
        int64_t at = 0x2000;
        for (int i = 0; i < count; ++i) {
            Bytes bytes = RandomString(random);
            image.Put(static_cast<size_t>(at), bytes);
            offsets.push_back(at);
            if (bytes.size() > 3 && bytes[bytes.size() - 3] < 0x80 && bytes[bytes.size() - 4] != 0x05)
                offsets.push_back(at + static_cast<int64_t>(bytes.size()) - 2);  // the tail: one letter and the end
            at += static_cast<int64_t>(bytes.size());
        }
        std::shuffle(offsets.begin(), offsets.end(), random);
        offsets.push_back(offsets[random() % offsets.size()]);
        return offsets;
    }

    // The script of the current image, written out and read back as insert reads it.
    ScriptDocument DumpAndReread(const ScriptSource& source) {
        ScriptDocument dumped;
        EXPECT_TRUE(ExtractScript(source, dumped)) << Trelvane_GetLastError();
        ScriptDocument read;
        EXPECT_TRUE(ReadScriptDocument(FormatScriptDocument(dumped), "s.txt", read)) << Trelvane_GetLastError();
        return read;
    }

    // Strings and a table of pointers to them in the form given, loaded as
    // the current image, dumped and read back.
    ScriptDocument DumpTableOf(const PointerForm& form, std::mt19937& random, GameImage& image) {
        std::vector<int64_t> targets = PutStrings(image, random, StringsFor(form));
        for (size_t i = 0; i < targets.size(); ++i)
            PutPointer(image, form, PlaceOfEntry(form, static_cast<int64_t>(i)), targets[i]);
        Load(image);
        ScriptDocument script = DumpAndReread(TableSource(form, static_cast<int>(targets.size())));
        EXPECT_EQ(script.entries.size(), targets.size());
        return script;
    }

    Bytes Image() const { return Bytes(CurrentRom().data, CurrentRom().data + CurrentRom().size); }

    static ScriptSource TableSource(const PointerForm& form, int count) {
        ScriptSource source;
        source.fontId = 1;
        source.tableFile = "rich.tbl";
        source.pointers = ScriptPointers::Table;
        source.form = form;
        source.form.count = count;
        return source;
    }
};

// Offset of the first byte where the images differ, -1 when they do not.
int64_t FirstDifference(const Bytes& a, const Bytes& b) {
    if (a.size() != b.size()) return -2;
    auto parted = std::mismatch(a.begin(), a.end(), b.begin());
    return parted.first == a.end() ? -1 : parted.first - a.begin();
}


TEST_F(ScriptRoundTripTest, AnUnchangedScriptPutsEveryByteBackInEveryTableForm) {
    for (const FormCase& form : TableForms()) {
        for (unsigned seed = 1; seed <= 12; ++seed) {
            SCOPED_TRACE(std::string(form.name) + " seed " + std::to_string(seed));
            std::mt19937 random(seed);
            GameImage image(0x10000);
            ScriptDocument script = DumpTableOf(form.form, random, image);
            ASSERT_FALSE(HasFailure());
            PlacementReport report;
            ASSERT_TRUE(PlaceScript(1, script, {}, "s.txt", report)) << Trelvane_GetLastError();
            ASSERT_EQ(FirstDifference(Image(), image.bytes), -1);
        }
    }
}

TEST_F(ScriptRoundTripTest, PointerListsWithSeveralPointersPerStringRoundTrip) {
    for (unsigned seed = 1; seed <= 12; ++seed) {
        std::mt19937 random(seed);
        GameImage image(0x10000);
        std::vector<int64_t> targets = PutStrings(image, random, 30);
        ScriptSource source = TableSource(Form(3, -1, 0, POINTER_MAP_LOROM, 0, seed % 2 == 0), 0);
        source.pointers = ScriptPointers::List;
        for (size_t i = 0; i < targets.size(); ++i) {
            std::vector<int64_t> places;
            for (unsigned k = 0; k <= i % 3; ++k) places.push_back(0x8000 + static_cast<int64_t>(i * 16 + k * 5));
            for (int64_t place : places) PutPointer(image, source.form, PlaceAtOffset(source.form, place), targets[i]);
            source.pointerLists.push_back(places);
        }
        Load(image);
        ScriptDocument script = DumpAndReread(source);
        PlacementReport report;
        ASSERT_TRUE(PlaceScript(1, script, {}, "s.txt", report)) << Trelvane_GetLastError();
        ASSERT_EQ(FirstDifference(Image(), image.bytes), -1) << "seed " << seed;
    }
}

// The bytes from where a place points, as many as expected holds.
std::string BytesAt(const PointerForm& form, const PointerPlace& place, size_t length) {
    std::optional<int64_t> target = TargetOfValue(form, ReadPlace(CurrentRom().data, place));
    if (!target || !RomRangeInside(*target, static_cast<int64_t>(length))) return "(outside)";
    return std::string(reinterpret_cast<const char*>(CurrentRom().data + *target), length);
}

std::string Encoded(const std::string& text) {
    const EncodedText encoded = EncodeText(1, text.c_str(), LITERAL_ENCODING);
    return encoded.bytes ? std::string(reinterpret_cast<const char*>(encoded.bytes), encoded.length) : "(none)";
}

TEST_F(ScriptRoundTripTest, TranslatedStringsReadBackThroughTheirPointers) {
    const std::vector<std::string> translations = {
        "Lass es; das ist sicher", "[3B] bleibt Text", "Zwei\nZeilen", "", "the theme <$01> raw", "kurz",
        "Ein viel laengerer Satz als vorher, mit Klammern [so] und Semikolon; am Ende",
        "[12] Kapitel\n;-) zwinker", "Leerzeichen am Ende "};
    for (const FormCase& form : TableForms()) {
        if (form.form.size == 1) continue;  // one-byte pointers reach no room for longer text
        SCOPED_TRACE(form.name);
        std::mt19937 random(7);
        GameImage image(0x10000);
        ScriptDocument script = DumpTableOf(form.form, random, image);
        for (size_t i = 0; i < translations.size(); ++i) script.entries[i].text = translations[i];
        script.regions.push_back({0x4000, 0x400});
        ScriptDocument edited;
        ASSERT_TRUE(ReadScriptDocument(FormatScriptDocument(script), "s.txt", edited));
        for (size_t i = 0; i < translations.size(); ++i) ASSERT_EQ(edited.entries[i].text, translations[i]);
        PlacementReport report;
        ASSERT_TRUE(PlaceScript(1, script, {}, "s.txt", report)) << Trelvane_GetLastError();
        for (size_t i = 0; i < script.entries.size(); ++i) {
            if (script.entries[i].null) continue;
            const std::string expected = Encoded(script.entries[i].text);
            EXPECT_EQ(BytesAt(form.form, PlaceOfEntry(form.form, static_cast<int64_t>(i)), expected.size()), expected)
                << i;
        }
    }
}

TEST_F(ScriptRoundTripTest, AScriptThatDoesNotFitChangesNothingAndSaysWhatIsMissing) {
    GameImage image(0x10000);
    std::vector<int64_t> targets = image.PutStrings(0x2000, {"one", "two", "three"});
    const PointerForm form = Form(2, 0x200, -0x6000);
    for (size_t i = 0; i < targets.size(); ++i) PutPointer(image, form, PlaceOfEntry(form, static_cast<int64_t>(i)), targets[i]);
    Load(image);
    ScriptDocument script = DumpAndReread(TableSource(form, 3));
    ASSERT_EQ(script.regions.size(), 1u);
    EXPECT_EQ(script.regions[0].start, 0x2000);
    EXPECT_EQ(script.regions[0].size, 14);
    script.entries[1].text = "twelve";  // 3 bytes more than the region holds
    PlacementReport report;
    EXPECT_FALSE(PlaceScript(1, script, {}, "s.txt", report));
    EXPECT_STREQ(Trelvane_GetLastError(), "s.txt: entry 0002 does not fit: 3 more bytes needed than the text regions hold.");
    EXPECT_EQ(Image(), image.bytes);

    // A second region takes what the first cannot hold.
    script.regions.push_back({0x3000, 7});
    ASSERT_TRUE(PlaceScript(1, script, {}, "s.txt", report)) << Trelvane_GetLastError();
    EXPECT_EQ(BytesAt(form, PlaceOfEntry(form, 1), 7), Encoded("twelve"));
    EXPECT_EQ(ReadPlace(CurrentRom().data, PlaceOfEntry(form, 2)), 0x3000u + 0x6000u);
}

TEST_F(ScriptRoundTripTest, FixedLengthKeepsEachPlacePaddedAndRefusesLongerStrings) {
    GameImage image(0x10000);
    image.PutStrings(0x2000, {"one", "two", "three"});
    Load(image);
    ScriptSource source = TableSource(Form(2, -1), 0);
    source.pointers = ScriptPointers::None;
    source.textAddress = 0x2000;
    source.count = 3;
    ScriptDocument script = DumpAndReread(source);
    EXPECT_EQ(script.padByte, 0xFD);  // the table's first terminal code
    script.entries[0].text = "1";
    PlacementReport report;
    PlacementOptions fixed;
    fixed.fixedLength = true;
    ASSERT_TRUE(PlaceScript(1, script, fixed, "s.txt", report)) << Trelvane_GetLastError();
    EXPECT_EQ(Bytes(CurrentRom().data + 0x2000, CurrentRom().data + 0x2008),
              (Bytes{'1', 0xFD, 0xFD, 0xFD, 't', 'w', 'o', 0xFF}));
    const Bytes before = Image();
    script.entries[2].text = "three!!";  // "th" is one code
    EXPECT_FALSE(PlaceScript(1, script, fixed, "s.txt", report));
    EXPECT_STREQ(Trelvane_GetLastError(), "s.txt: entry 0002 is 1 bytes longer than its place.");
    EXPECT_EQ(Image(), before);
}

}  // namespace

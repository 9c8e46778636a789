#include "XmlBenchDocuments.h"

#include <cstdint>

namespace
{
// A small deterministic generator, so that documents are the same from run to run.
class Random
{
public:
    uint32_t Next()
    {
        state_ = state_ * 6364136223846793005ULL + 1442695040888963407ULL;
        return static_cast<uint32_t>(state_ >> 33);
    }
    uint32_t Below(uint32_t n) { return Next() % n; }

private:
    uint64_t state_ = 0x2545F4914F6CDD1DULL;
};

const char* const kWords[] = {"Night", "Day", "Blue", "River", "Stone", "Light", "Mirror", "Echo", "Winter",
                              "Garden", "Ocean", "Fire", "Silver", "Moon", "Road", "Song"};
const char* const kArtists[] = {"\xC3\x85sa \xC3\x96" "berg", "Jos\xC3\xA9 Gonz\xC3\xA1lez", "The Quiet Ones",
                                "M\xC3\xBCller &amp; S\xC3\xB6hne", "\xE5\xB1\xB1\xE7\x94\xB0 Taro", "Nina Hart"};
const char* const kGenres[] = {"Jazz &amp; Blues", "Rock", "Classical", "Folk &amp; World", "Electronic"};

std::string Words(Random& random, int count)
{
    std::string out;
    for (int i = 0; i < count; ++i) {
        if (i)
            out += ' ';
        out += kWords[random.Below(16)];
    }
    return out;
}
}   // namespace

std::string MakeInstallDescription()
{
    std::string x = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\r\n<HVIC version=\"1.0\">\r\n"
                    "  <Settings SupportFiles=\"..\\Support\" AllowDowngrade=\"0\" BundledMedia=\"Media\"/>\r\n"
                    "  <Product>\r\n"
                    "    <InstallToPath></InstallToPath>\r\n"
                    "    <ObsoleteFiles>Old.dll;Legacy\\Skin.dat;Readme &amp; Notes.txt</ObsoleteFiles>\r\n"
                    "    <DefaultFileTypes>mp3;wma;ogg;flac;m4a;wav</DefaultFileTypes>\r\n"
                    "    <DefaultAssocFileTypes>mp3;wma;ogg;flac</DefaultAssocFileTypes>\r\n"
                    "  </Product>\r\n"
                    "  <!-- MIME types registered for the player -->\r\n"
                    "  <MimeAssociations>\r\n";
    const char* mimes[] = {"audio/mpeg", "audio/x-ms-wma", "audio/ogg", "audio/flac", "audio/mp4", "audio/wav"};
    for (const char* m : mimes)
        x += std::string("    <Mime type=\"") + m + "\" extension=\"." + (m + 6) + "\"/>\r\n";
    x += "  </MimeAssociations>\r\n  <Installer>\r\n"
         "    <ShowLanguageSelection>1</ShowLanguageSelection>\r\n"
         "    <PromoCount>4</PromoCount>\r\n"
         "    <PromoMinimumMilliseconds>2500</PromoMinimumMilliseconds>\r\n"
         "  </Installer>\r\n"
         "  <General><MegaSkin></MegaSkin><MegaSkinKey>Standard View Skin 2</MegaSkinKey></General>\r\n"
         "  <SpecialFeatures><MinIEVersion>6.0.0.0</MinIEVersion></SpecialFeatures>\r\n"
         "  <DefaultSettings>\r\n";
    for (int i = 0; x.size() < 4000; ++i)
        x += "    <Setting" + std::to_string(i) + ">value &quot;" + std::to_string(i * 7) + "&quot;</Setting" +
             std::to_string(i) + ">\r\n";
    x += "  </DefaultSettings>\r\n</HVIC>\r\n";
    return x;
}

std::string MakeCatalogue(size_t bytes)
{
    Random random;
    std::string x;
    x.reserve(bytes + 4096);
    x += "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<!-- Music catalogue -->\n<Catalogue owner=\"Halvard\" "
         "version=\"3\">\n";
    for (int album = 1; x.size() < bytes; ++album) {
        const std::string id = std::to_string(album);
        x += "  <!-- Album " + id + " -->\n";
        x += "  <Album id=\"" + id + "\" year=\"" + std::to_string(1950 + random.Below(70)) + "\" genre=\"" +
             kGenres[random.Below(5)] + "\" rating='" + std::to_string(random.Below(5) + 1) + ".5'>\n";
        x += "    <Title>" + Words(random, 3) + " &amp; " + Words(random, 2) + " \xE2\x80\x94 Vol. " + id +
             "</Title>\n";
        x += std::string("    <Artist country=\"SE\">") + kArtists[random.Below(6)] + "</Artist>\n";
        x += "    <Notes><![CDATA[Recorded <live> at \"Club " + std::to_string(random.Below(99)) +
             "\" & remastered; " + Words(random, 6) + "]]></Notes>\n";
        const uint32_t tracks = 6 + random.Below(8);
        for (uint32_t t = 1; t <= tracks; ++t) {
            x += "    <Track n=\"" + std::to_string(t) + "\" length=\"" + std::to_string(2 + random.Below(6)) + ":" +
                 std::to_string(10 + random.Below(50)) + "\">" + Words(random, 1 + random.Below(4)) +
                 " &#233;t&#xE9; &lt;" + std::to_string(t) + "&gt;</Track>\n";
        }
        x += "  </Album>\n";
    }
    x += "</Catalogue>\n";
    return x;
}

std::string MakeSiblings(size_t children)
{
    std::string x = "<Root>";
    x.reserve(children * 7 + 32);
    for (size_t i = 0; i < children; ++i)
        x += "<Item/>";
    x += "<End/></Root>";
    return x;
}

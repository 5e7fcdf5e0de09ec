// KeywordDeckCards.h: the cards of the keywords that our decks use, by the columns of the LS-DYNA Keyword User's
// Manual.
//
// A card is a text of field names from the left, each 10 columns wide and a real number, unless marks ahead of the name
// say otherwise: "#" an integer, "%" an integer that may be written as a real number, "'" text, and a number the width.

#ifndef KEYWORDDECKCARDS_H
#define KEYWORDDECKCARDS_H

#include <cctype>
#include <cstddef>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace keyworddeck
{
enum class FieldKind
{
    Real,
    Integer,
    Count, // an integer that may be written as a real number
    Text
};

struct FieldLayout
{
    std::string name;
    std::size_t first = 0; // column, from 0
    std::size_t width = 10;
    FieldKind kind = FieldKind::Real;
};

struct CardLayout
{
    std::vector<FieldLayout> fields;

    explicit CardLayout(std::string const & i_text)
    {
        std::istringstream words(i_text);
        for (std::string word; words >> word;)
            add(word);
    }
    std::size_t width() const { return fields.empty() ? 0 : fields.back().first + fields.back().width; }
    FieldLayout const & field(std::string const & i_name) const
    {
        for (FieldLayout const & candidate : fields)
            if (candidate.name == i_name)
                return candidate;
        throw std::out_of_range("the card has no field " + i_name);
    }

private:
    void add(std::string const & i_word)
    {
        FieldLayout made;
        made.first = width();
        std::size_t at = 0;
        std::size_t number = 0;
        for (; std::isdigit(static_cast<unsigned char>(i_word[at])); ++at)
            number = 10 * number + static_cast<std::size_t>(i_word[at] - '0');
        if (number > 0)
            made.width = number;
        made.kind = i_word[at] == '#'    ? FieldKind::Integer
                    : i_word[at] == '%'  ? FieldKind::Count
                    : i_word[at] == '\'' ? FieldKind::Text
                                         : FieldKind::Real;
        made.name = i_word.substr(made.kind == FieldKind::Real ? at : at + 1);
        fields.push_back(made);
    }
};

struct KeywordLayout
{
    std::string keyword;
    std::size_t required; // cards that there must be
    std::vector<CardLayout> cards;
    bool repeatsLast; // any number of the last one

    CardLayout const * card(std::size_t i) const
    {
        if (i < cards.size())
            return &cards[i];
        return repeatsLast ? &cards.back() : nullptr;
    }
};

// clang-format off
inline std::vector<KeywordLayout> allLayouts()
{
    using Cards = std::vector<CardLayout>;
    auto const c = [](char const * i_text) { return CardLayout(i_text); };
    CardLayout const line("80'TEXT");
    CardLayout const interval("DT #BINARY #LCUR #IOOPT");
    CardLayout const section("#SECID #ELFORM SHRF %NIP PROPT #QR/IRID #ICOMP #SETYP");
    CardLayout const contact1("#SSID #MSID #SSTYP #MSTYP #SBOXID #MBOXID #SPR #MPR");
    CardLayout const contact2("FS FD DC VC VDC #PENCHK BT DT");
    CardLayout const contact3("SFS SFM SST MST SFST SFMT FSF VSF");
    CardLayout const contactA("#SOFT SOFSCL #LCIDAB MAXPAR SBOPT #DEPTH #BSORT #FRCFRQ");
    CardLayout const contactB("PENMAX #THKOPT #SHLTHK #SNLOG #ISYM #I2D3D SLDTHK SLDSTF");
    Cards const contact = {contact1, contact2, contact3, contactA, contactB};
    return {
        {"KEYWORD", 0, {}, false},
        {"END", 0, {}, false},
        {"TITLE", 1, {line}, false},
        {"INCLUDE", 1, {c("236'FILENAME")}, false},
        {"CONTROL_UNITS", 1, {c("'LENGTH 'TIME 'MASS 'TEMP")}, false},
        {"CONTROL_TERMINATION", 1, {c("ENDTIM #ENDCYC DTMIN ENDENG ENDMAS")}, false},
        {"CONTROL_TIMESTEP", 1, {c("DTINIT TSSFAC #ISDO TSLIMT DT2MS #LCTM #ERODE #MS1ST"),
                                 c("DT2MSF #DT2MSLC #IMSCL")}, false},
        {"CONTROL_HOURGLASS", 1, {c("#IHQ QH")}, false},
        {"CONTROL_SHELL", 1, {c("WRPANG #ESORT #IRNXX #ISTUPD #THEORY #BWC #MITER #PROJ")}, false},
        {"CONTROL_CONTACT", 1, {c("SLSFAC RWPNAL #ISLCHK #SHLTHK #PENOPT #THKCHG #ORIEN #ENMASS"),
                                c("#USRSTR #USRFRC #NSBCS #INTERM XPENE #SSTHK #ECDT #TIEDPRJ")}, false},
        {"CONTROL_ENERGY", 1, {c("#HGEN #RWEN #SLNTEN #RYLEN")}, false},
        {"CONTROL_OUTPUT", 1, {c("#NPOPT #NEECHO #NREFUP #IACCOP OPIFS #IPNINT #IKEDIT #IFLUSH")}, false},
        {"CONTROL_BULK_VISCOSITY", 1, {c("Q1 Q2 #TYPE")}, false},
        {"CONTROL_ADAPTIVE", 1, {c("ADPFREQ ADPTOL #ADPOPT #MAXLVL TBIRTH TDEATH #LCADP #IOFLAG"),
                                 c("ADPSIZE #ADPASS #IREFLG ADPENE ADPTH #MEMORY #ORIENT #MAXEL"),
                                 c("#IADPN90 #IADPGH #NCFREQ #IADPCL #ADPCTL CBIRTH CDEATH #LCLVL")}, false},
        {"DATABASE_MATSUM", 1, {interval}, false},
        {"DATABASE_GLSTAT", 1, {interval}, false},
        {"DATABASE_RCFORC", 1, {interval}, false},
        {"DATABASE_SLEOUT", 1, {interval}, false},
        {"DATABASE_RBDOUT", 1, {interval}, false},
        {"DATABASE_EXTENT_BINARY", 1, {c("#NEIPH #NEIPS #MAXINT #STRFLG #SIGFLG #EPSFLG #RLTFLG #ENGFLG"),
                                       c("#CMPFLG #IEVERP #BEAMIP #DCOMP #SHGE #STSSZ #N3THDT #IALEMAT")}, false},
        {"DATABASE_BINARY_D3PLOT", 1, {c("DT #LCDT #BEAM #NPLTC #PSETID"), c("#IOOPT")}, false},
        {"INTERFACE_SPRINGBACK_DYNA3D", 1, {c("#PSID #NSHV")}, false},
        {"DEFINE_CURVE", 2, {c("#LCID #SIDR SFA SFO OFFA OFFO #DATTYP"), c("20A1 20O1")}, true},
        {"DEFINE_VECTOR", 1, {c("#VID XT YT ZT XH YH ZH #CID")}, false},
        {"DEFINE_COORDINATE_SYSTEM", 2, {c("#CID XO YO ZO XL YL ZL"), c("XP YP ZP")}, false},
        {"DEFINE_BOX_DRAWBEAD", 1, {c("#BOXID #PID #SID #IDIR #STYPE RADIUS #CID")}, false},
        {"SET_PART_LIST", 2, {c("#SID DA1 DA2 DA3 DA4"), c("#PID1 #PID2 #PID3 #PID4 #PID5 #PID6 #PID7 #PID8")}, true},
        {"SET_NODE_LIST_GENERATE", 2, {c("#SID DA1 DA2 DA3 DA4"),
                                       c("#B1BEG #B1END #B2BEG #B2END #B3BEG #B3END #B4BEG #B4END")}, true},
        {"PART", 2, {line, c("#PID #SECID #MID #EOSID #HGID #GRAV #ADPOPT #TMID")}, false},
        {"SECTION_SHELL", 2, {section, c("T1 T2 T3 T4 NLOC MAREA IDOF #EDGSET")}, false},
        {"MAT_TRANSVERSELY_ANISOTROPIC_ELASTIC_PLASTIC", 1, {c("#MID RO E PR SIGY ETAN R #HLCID")}, false},
        {"MAT_PIECEWISE_LINEAR_PLASTICITY", 4, {c("#MID RO E PR SIGY ETAN FAIL TDEL"), c("C P #LCSS #LCSR VP"),
                                                c("EPS1 EPS2 EPS3 EPS4 EPS5 EPS6 EPS7 EPS8"),
                                                c("ES1 ES2 ES3 ES4 ES5 ES6 ES7 ES8")}, false},
        {"MAT_RIGID", 3, {c("#MID RO E PR N #COUPLE M 'ALIAS"), c("CMO #CON1 #CON2"), c("#LCO A2 A3 V1 V2 V3")}, false},
        {"CONTACT_FORMING_ONE_WAY_SURFACE_TO_SURFACE", 3, contact, false},
        {"CONTACT_FORMING_ONE_WAY_SURFACE_TO_SURFACE_SMOOTH", 3, contact, false},
        {"CONTACT_AUTOMATIC_ONE_WAY_SURFACE_TO_SURFACE", 3, contact, false},
        {"CONTACT_DRAWBEAD", 4, {contact1, contact2, contact3,
                                 c("#LCIDRF #LCIDNF DBDTH DFSCL #NUMINT #DBPID ELOFF #NBEAD")}, false},
        {"BOUNDARY_PRESCRIBED_MOTION_RIGID_LOCAL", 1, {c("#TYPEID #DOF #VAD #LCID SF #VID DEATH BIRTH")}, false},
        {"BOUNDARY_PRESCRIBED_MOTION_RIGID", 1, {c("#TYPEID #DOF #VAD #LCID SF #VID DEATH BIRTH")}, false},
        {"LOAD_RIGID_BODY", 1, {c("#PID #DOF #LCID SF #CID #M1 #M2 #M3")}, false},
        {"LOAD_MASK", 1, {c("#PID #LCID #VID1 OFF #BOXID #LCIDM #VID2 #INOUT"), c("#ICYCLE")}, false},
        {"CONSTRAINED_EXTRA_NODES_SET", 1, {c("#PID #NSID #IFLAG")}, false},
        {"NODE", 0, {c("8#NID 16X 16Y 16Z 8#TC 8#RC")}, true},
        {"ELEMENT_SHELL", 0, {c("8#EID 8#PID 8#N1 8#N2 8#N3 8#N4 8#N5 8#N6 8#N7 8#N8")}, true},
    };
}
// clang-format on

// Null for a keyword that is not in the table.
inline KeywordLayout const * layoutOf(std::string const & i_keyword)
{
    static std::map<std::string, KeywordLayout> const table = []
    {
        std::map<std::string, KeywordLayout> made;
        for (KeywordLayout const & layout : allLayouts())
            made.emplace(layout.keyword, layout);
        return made;
    }();
    auto const found = table.find(i_keyword);
    return found == table.end() ? nullptr : &found->second;
}
} // namespace keyworddeck

#endif

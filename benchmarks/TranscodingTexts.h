#pragma once

#include "benchmarks/Contest.h"
#include "encoding/UTextReceiver.h"

#include <algorithm>
#include <random>
#include <string>
#include <string_view>
#include <vector>

// Texts in many scripts, and the receiver at the end of each conversion.

template<typename E>
using Text = std::basic_string<typename E::Unit>;

constexpr std::size_t kLengthOfText = 1 << 17; // in bytes

/// Words, or phrases of a script that writes no spaces, out of which a text is put together.
struct Script
{
    char const* name;
    std::u32string words;      ///< each with a '|' behind it
    double shareOfTwoByte = 0; ///< of characters to be replaced with accented ones
    Goal decoding = { "", 1.0, 2.5 };
    Goal encoding = { "", 0.95, 3.5 };
};

inline std::u32string const kLatin =
    U"the |of |and |administration |agent |service |is |running |on |port |eight |hundred |"
    U"since |yesterday, |when |a |package |was |installed |from |repository. |It |will |"
    U"restart |automatically |after |every |update |of |system |libraries.\n|";

inline std::u32string const kRussian =
    U"служба |агент |запущен |и |работает |на |порту |после |установки |обновления |система |"
    U"не |может |найти |каталог, |проверьте |права |доступа |к |файлам |или |обратитесь |к |"
    U"администратору.\n|";

inline std::u32string const kChinese =
    U"代理服务|正在运行|。|系统|无法找到|目录|，|请检查|文件的|访问权限|或者|联系|管理员|"
    U"安装完成后|"
    U"会自动|重新启动|更新|软件包|日志|记录在|。\n|";

inline std::u32string const kEmoji =
    U"😀|😂😂|👍🏽|🎉 |🚀|🌍|🔧|💾|🐧🐧|🤖|🔥|🦊|🇨🇭|☕|\n|";

inline Script const kScripts[] = {
    { "ASCII", kLatin, 0, { "", 6, 6 }, { "", 4.5, 7 } },
    { "Latin, 8% of two bytes", kLatin, 0.08, { "", 1.6, 3.8 }, { "", 1.0, 3.5 } },
    { "Cyrillic", kRussian },
    { "Greek",
        U"η |υπηρεσία |εκτελείται |στη |θύρα |μετά |την |εγκατάσταση |της |ενημέρωσης |το |"
        U"σύστημα |δεν |μπορεί |να |βρει |τον |κατάλογο, |ελέγξτε |δικαιώματα |αρχείων.\n|" },
    { "Arabic",
        U"الخدمة |تعمل |على |المنفذ |بعد |تثبيت |التحديث |النظام |لا |يمكن |العثور |الدليل، |"
        U"تحقق |من |أذونات |الوصول |إلى |الملفات |أو |اتصل |بالمسؤول.\n|" },
    { "Hebrew", U"השירות |פועל |על |היציאה |לאחר |התקנת |העדכון |המערכת |אינה |יכולה |למצוא |את |"
                U"התיקייה, |בדוק |הרשאות |גישה |לקבצים |או |פנה |למנהל.\n|" },
    { "Devanagari", U"सेवा |चल |रही |है |और |पोर्ट |पर |अद्यतन |स्थापित |करने |के |बाद |प्रणाली |"
                    U"निर्देशिका |नहीं |मिल |सकी, |फ़ाइलों |की |अनुमति |जाँचें |या |व्यवस्थापक |से |मिलें।\n|" },
    { "Thai", U"บริการ|กำลังทำงาน|บนพอร์ต |หลังจาก|ติดตั้ง|การปรับปรุง |ระบบ|ไม่สามารถ|ค้นหา|ไดเรกทอรี|ได้ |"
              U"โปรดตรวจสอบ|สิทธิ์|การเข้าถึง|แฟ้ม |หรือติดต่อ|ผู้ดูแลระบบ\n|" },
    { "Chinese", kChinese },
    { "Japanese", U"サービスは|実行中です。|ポート|更新プログラム|の|インストール後に|システムは|"
                  U"ディレクトリを|見つける|"
                  U"ことが|できません。|ファイルの|アクセス権を|確認するか、|管理者に|お問い合わせ|"
                  U"ください。\n|" },
    { "Korean", U"서비스가 |실행 |중입니다. |업데이트를 |설치한 |후 |시스템이 |디렉터리를 |찾을 "
                U"|수 |없습니다. |"
                U"파일의 |접근 |권한을 |확인하거나 |관리자에게 |문의하십시오.\n|" },
    { "emoji", kEmoji },
    { "mixed", kLatin + kRussian + kChinese + kEmoji },
};

using Random = std::mt19937;

inline std::size_t Below( std::size_t limit, Random& random )
{
    return random() % limit;
}

inline std::vector<std::u32string> SplitWords( std::u32string_view text )
{
    std::vector<std::u32string> words;
    while ( !text.empty() )
    {
        std::size_t const length = text.find( U'|' );
        words.emplace_back( text.substr( 0, length ) );
        text.remove_prefix( length + 1 );
    }
    return words;
}

inline std::u32string MakeText( Script const& script, Random& random )
{
    constexpr std::u32string_view kAccented = U"äöüßéèàçñøåæłščžőı";
    std::vector<std::u32string> const words = SplitWords( script.words );
    std::bernoulli_distribution replace( script.shareOfTwoByte );
    std::u32string text;
    while ( text.size() < kLengthOfText )
        for ( char32_t const letter : words[Below( words.size(), random )] )
            text += replace( random ) ? kAccented[Below( kAccented.size(), random )] : letter;
    return text;
}

inline void Append( std::string& text, char32_t c )
{
    auto const put = [&text]( char32_t bits ) { text += static_cast<char>( bits ); };
    if ( c < 0x80 )
        return put( c );
    if ( c < 0x800 )
        put( 0xC0 | c >> 6 );
    else
    {
        if ( c < 0x10000 )
            put( 0xE0 | c >> 12 );
        else
        {
            put( 0xF0 | c >> 18 );
            put( 0x80 | ( c >> 12 & 0x3F ) );
        }
        put( 0x80 | ( c >> 6 & 0x3F ) );
    }
    put( 0x80 | ( c & 0x3F ) );
}

inline void Append( Text<UTF16>& text, char32_t c )
{
    if ( c >= 0x10000 )
    {
        text += static_cast<UTF16::Unit>( 0xD7C0 + ( c >> 10 ) );
        c = 0xDC00 + ( c & 0x3FF );
    }
    text += static_cast<UTF16::Unit>( c );
}

/// A text and the pieces in which it arrives. They cut characters.
template<typename E>
struct Input
{
    explicit Input( Script const& script )
    {
        Random random( 1 );
        for ( char32_t const c : MakeText( script, random ) )
        {
            if ( text.size() >= kLengthOfText / sizeof( typename E::Unit ) )
                break;
            Append( text, c );
        }
        for ( std::size_t next = 0; next < text.size(); )
        {
            std::size_t const length = std::min( 3500 + Below( 1200, random ), text.size() - next );
            pieces.emplace_back( text.data() + next, text.data() + next + length );
            next += length;
        }
    }

    Text<E> text;
    std::vector<ConstArrayOf<typename E::Unit>> pieces;
};

/// The end of a conversion: counts the units and samples one of each 64.
template<typename E>
class Digest : public UTextReceiver<E>
{
  public:
    void Start( E ) override { mCount = mNext = mHash = 0; }

    void Receive( ConstArrayOf<typename E::Unit> units ) override
    {
        for ( ; mNext < mCount + units.Length(); mNext += 64 )
            mHash = mHash * 31 + static_cast<std::uint32_t>( units.begin()[mNext - mCount] );
        mCount += units.Length();
    }

    std::uint64_t Value() const { return mHash * 31 + mCount; }

  private:
    std::uint64_t mCount = 0;
    std::uint64_t mNext = 0;
    std::uint64_t mHash = 0;
};

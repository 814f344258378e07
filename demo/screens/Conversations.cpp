#include "demo/screens/Conversations.h"

#include "demo/SampleArchive.h"
#include "demo/SampleMessages.h"

#include <QStringList>

namespace Talvo {

namespace {

constexpr auto watering = R"(Balkonda domates için **düzen**, miktardan önemlidir:

| Ay | Sıklık | Saksı başına |
|---|---|---|
| Mayıs | iki günde bir | 1 litre |
| Haziran | her gün | 1,5 litre |
| Temmuz, ağustos | sabah ve akşam | 2 litre |

- Suyu *yaprağa değil toprağa* ver.
- Saksının altından su çıkınca dur.
- Üst 3 cm kuruduysa sulama zamanı gelmiştir.)";

constexpr auto yellowLeaves =
    R"(Alt yapraklardan başlıyorsa çoğunlukla **azot eksikliğidir**; damarlar yeşil kalıp arası sararıyorsa **magnezyum** eksiktir.

1. Sararan yaprakları temiz bir makasla al.
2. İki haftada bir, yarı ölçü sıvı gübre ver.
3. Üçüncü haftada hâlâ yayılıyorsa bana bir daha yaz.

Sulama da bozulmuş olabilir: toprak sürekli ıslaksa kök nefes alamaz.)";

constexpr auto suckers =
    R"(Gövdeyle yaprak sapının arasından çıkan sürgünlere **koltuk** denir. Sırık çeşitlerde alınır, bodur (*oturak*) çeşitlerde bırakılır.

> Kural basit: adında “sırık” geçiyorsa al, geçmiyorsa bırak.

5 cm olmadan elle kırmak bitkiyi en az yorar; kalınlaşmışsa `45°` açıyla kes.)";

constexpr auto everyConstruct = R"(# Birinci düzey
## İkinci düzey
### Üçüncü düzey, altıncıya kadar böyle

Bir paragraf: **kalın**, *eğik*, ***ikisi birden***, ~~üstü çizili~~, `kod`, [bağlantı](https://www.tdk.gov.tr "Türk Dil Kurumu") ve çıplak adres https://sozluk.gov.tr
İkinci satırı da var. Resmin yalnızca adı görünür: ![gün batımı](https://example.org/gun-batimi.png)

- Kısa madde
- Uzun madde, ki metni bir satıra sığmayacak kadar uzun olsun diye biraz daha uzatıldı ve işaretinin değil kendi altına sarıldı
- **Kalın** ve `kodlu` madde

1. Unu ele
2. Mayayı ılık suda çöz
12. Numaralar kaynakta yazıldığı gibi kalır

| Dil | İlk yıl | Not |
|:----|:-------:|-----|
| C++ | 1985 | Sistem programlama, oyunlar, `std::vector` |
| Python | 1991 | Veri bilimi ve **betikler** |
| Rust | 2015 |

| Pazartesi | Salı | Çarşamba | Perşembe | Cuma |
|---|---|---|---|---|
| mercimek | nohut | fasulye | bulgur | balık |

| Yalnız başlık | satır yok |
|---|---|

---

> Alıntı ve çitli kod düz metin olarak kalır:

```
for (int i = 0; i < 3; ++i)
```

Başka yazılar ve simgeler: İğdır’da ılık çay ☕, 🍅, é, עברית, العربية. HTML yorumlanmaz: <b>kalın değil</b>.)";

ChatSession tomatoes()
{
    return conversation(
        QStringLiteral("Balkonda domates yetiştirmek"), 3 * minute,
        {assistantSays("Yeni sohbet hazır. Ne hakkında konuşalım?"),
         userSays("Merhaba! Güneye bakan küçük bir balkonum var, domates yetiştirmek istiyorum."),
         assistantSays("Ne güzel! Güney cephe domates için en iyisi. Üç soruyla başlayalım:\n\n"
                       "1. Saksıların kaç litre?\n2. Fide mi aldın, tohumdan mı başlayacaksın?\n"
                       "3. Balkon rüzgâr alıyor mu?"),
         userSays("20 litrelik dört saksı var.\nFide aldım, pembe ve çeri.\nRüzgâr pek yok."),
         assistantSays("20 litre iki çeşit için de yeterli. Fideleri ilk yapraklarına kadar "
                       "gömersen gövdeden de kök verirler."),
         userSays("Ne kadar sulamalıyım?"), assistantSays(watering),
         userSays("Alt yapraklar sararmaya başladı, neden olabilir? Geçen hafta gübre vermiştim; "
                  "belki fazla geldi, belki de yağmurdan sonra saksı altlıklarında biriken suyu "
                  "boşaltmayı unuttuğum için kökler çürüyordur diye korkuyorum."),
         assistantSays(yellowLeaves), userSays("Koltuk almak ne demek?"), assistantSays(suckers),
         userSays("Teşekkürler 🍅"),
         assistantSays("Afiyetle yemen dileğiyle! İlk domates kızarınca haber ver.")});
}

} // namespace

ChatArchive longConversation()
{
    ChatArchive archive = sampleArchive();
    archive.sessions.insert(archive.sessions.begin(), tomatoes());
    const QStringList olderTitles{
        QStringLiteral("Kışlık lastiği ne zaman takmalıyım, yazlıklar nerede saklanır?"),
        QStringLiteral("Almanca yeterlilik sınavı"),
        QStringLiteral("Bisiklet zinciri bakımı"),
        QStringLiteral("Teyzeme doğum günü mektubu"),
        QStringLiteral("Yeni Sohbet"),
        QStringLiteral("Evde turşu kurmak"),
        QStringLiteral("Karadeniz’de kamp yerleri"),
        QStringLiteral("Satranç açılışları"),
        QStringLiteral("Kira sözleşmesindeki maddeler")};
    double age = 12 * day;
    for (const QString &title : olderTitles) {
        archive.sessions.push_back(
            conversation(title, age, {assistantSays("Yeni sohbet hazır. Ne hakkında konuşalım?")}));
        age *= 1.5;
    }
    archive.selectedSessionID = archive.sessions.front().id;
    return archive;
}

ChatArchive shortConversation()
{
    ChatArchive archive = sampleArchive();
    archive.sessions.insert(
        archive.sessions.begin(),
        conversation(QStringLiteral("Akşam yemeği fikri"), 2 * minute,
                     {assistantSays("Yeni sohbet hazır. Ne hakkında konuşalım?"),
                      userSays("Dolapta kabak, yoğurt ve dereotu var. Ne yapabilirim?"),
                      assistantSays("**Kabak mücveri** tam sana göre: kabakları rendele, suyunu "
                                    "iyice sık, dereotuyla karıştırıp tavada kızart. Yanına "
                                    "sarımsaklı yoğurt çok yakışır.")}));
    archive.selectedSessionID = archive.sessions.front().id;
    return archive;
}

ChatArchive weekendPlan()
{
    ChatArchive archive = sampleArchive();
    archive.selectedSessionID = archive.sessions.at(1).id;
    return archive;
}

ChatArchive everyMarkdownConstruct()
{
    ChatArchive archive = sampleArchive();
    archive.sessions.insert(archive.sessions.begin(),
                            conversation(QStringLiteral("Bütün biçimler"), 2 * minute,
                                         {userSays("**Bu** yazı\n- olduğu gibi\n- kalır"),
                                          assistantSays(everyConstruct)}));
    archive.selectedSessionID = archive.sessions.front().id;
    return archive;
}

} // namespace Talvo

#include "demo/SampleArchive.h"

#include "demo/SampleMessages.h"

namespace Talvo {

namespace {

constexpr auto markdownTour = R"(# Markdown turu

Yanıtlar **kalın**, *eğik*, ***ikisi birden*** ve ~~üstü çizili~~ olabilir; `kod` ve [bağlantılar](https://www.tdk.gov.tr "Türk Dil Kurumu") da gösterilir. Çıplak adresler de tanınır: https://sozluk.gov.tr

## Listeler

- Elma
- Armut, ki bu maddenin metni bir satıra sığmayacak kadar uzun olsun diye biraz daha uzatıldı ve kendi altına sarıldı
- **Şeftali**

1. Unu ele
2. Mayayı ılık suda çöz
7. Numaralar kaynakta yazıldığı gibi kalır

### Tablo

| Dil | İlk yıl | Not |
|:----|:-------:|-----|
| C++ | 1985 | Sistem programlama, oyunlar, `std::vector` |
| Python | 1991 | Veri bilimi ve **betikler** |
| Rust | 2015 | Kısa satır |

---

Başka yazılar ve simgeler de sorunsuz: İğdır’da ılık çay ☕, 👩‍👩‍👧, é, עברית, العربية. HTML yorumlanmaz: <b>kalın değil</b>.)";

constexpr auto breadRecipe = R"(Harika bir fikir! İlk ekşi maya için **beş gün** yeter:

1. Bir kavanozda 50 g tam buğday unu ile 50 g ılık suyu karıştır.
2. Her gün yarısını at, yerine 50 g un ve 50 g su ekle.
3. Üçüncü günden sonra kabarcıklar görünür.
4. Maya dört saatte iki katına çıkıyorsa *hazır* demektir.

> Sabırlı ol: mutfak serinse bu iş bir haftayı bulabilir.)";

constexpr auto itinerary = R"(İzmir’de iki gün için şöyle bir plan yaptım:

### Cumartesi
- Sabah: **Kemeraltı** ve Kızlarağası Hanı
- Öğle: boyoz ve gevrek
- Akşamüstü: Kordon’da yürüyüş

### Pazar
- **Efes** (sabah 8’de orada ol, öğlen çok sıcak)
- Dönüşte Şirince

| Kalem | Kişi başı |
|---|---|
| Konaklama | 1.800 ₺ |
| Yol | 450 ₺ |
| Yemek | 1.200 ₺ |)";

} // namespace

ChatArchive sampleArchive()
{
    ChatArchive archive;
    archive.sessions = {
        conversation(
            QStringLiteral("Markdown turu"), 0.2 * hour,
            {assistantSays("Yeni sohbet hazır. Ne hakkında konuşalım?"),
             userSays("Yanıtlarında neler gösterebiliyorsun?\nHepsini tek mesajda görmek isterim."),
             assistantSays(markdownTour)}),
        conversation(QStringLiteral("İzmir’de hafta sonu"), 5 * hour,
                     {assistantSays("Yeni sohbet hazır. Ne hakkında konuşalım?"),
                      userSays("Hafta sonu İzmir’e gidiyoruz, iki günlük bir plan yapar mısın?"),
                      assistantSays(itinerary), userSays("Çok iyi, teşekkürler!"),
                      assistantSays("Rica ederim, iyi yolculuklar! 🌊")}),
        conversation(QStringLiteral("Ekşi mayalı ekmek"), day + hour,
                     {assistantSays("Yeni sohbet hazır. Ne hakkında konuşalım?"),
                      userSays("Evde ekşi maya yapmak istiyorum. Nereden başlamalıyım?"),
                      assistantSays(breadRecipe)}),
        conversation(QStringLiteral("İş başvurusu için ön yazı"), 9 * day,
                     {assistantSays("Yeni sohbet hazır. Ne hakkında konuşalım?"),
                      userSays("Kısa ve samimi bir ön yazı lazım."),
                      assistantSays("Elbette. Hangi iş için başvuruyorsun ve en çok hangi "
                                    "deneyimini öne çıkarmak istersin?")}),
    };
    archive.selectedSessionID = archive.sessions.front().id;
    archive.memory = QStringLiteral("- Hafta sonları ekmek yapmayı seviyor");
    archive.selectedModel = QStringLiteral("llama-3.3-70b-versatile");
    return archive;
}

} // namespace Talvo

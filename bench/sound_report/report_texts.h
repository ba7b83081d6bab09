// SPDX-License-Identifier: MIT
#pragma once
// The fixed texts the sound report speaks: a news paragraph of plain words (no numbers or
// abbreviations, so that both engines say exactly the syllables written) and thirty everyday
// sentences. Changing them changes every figure of the report, so they stay as they are.
#include <array>
#include <string_view>

namespace sound_report {

inline constexpr std::string_view kNewsParagraph =
    "Sáng nay, tại thành phố Hồ Chí Minh, hàng nghìn người dân đã tham gia ngày hội đi bộ vì "
    "môi trường. Ban tổ chức cho biết chương trình nhằm kêu gọi mọi người hạn chế sử dụng túi "
    "ni lông và bảo vệ nguồn nước sạch. Nhiều gia đình mang theo trẻ nhỏ, cùng nhau nhặt rác dọc "
    "bờ sông và trồng thêm cây xanh trong công viên. Theo các chuyên gia, những hoạt động như vậy "
    "giúp nâng cao ý thức cộng đồng và tạo thói quen tốt cho thế hệ trẻ. Dự kiến trong năm tới, "
    "thành phố sẽ mở rộng chương trình ra các quận huyện ngoại thành.";

inline constexpr std::array<std::string_view, 30> kSentences = {
    "Hôm nay trời nắng đẹp, chúng tôi rủ nhau ra công viên đi dạo.",
    "Mẹ tôi thường dậy sớm để nấu bữa sáng cho cả nhà.",
    "Chiếc xe buýt cuối cùng đã rời bến từ lâu.",
    "Em có biết đường đến bưu điện gần nhất không?",
    "Những cơn mưa đầu mùa làm không khí trở nên mát mẻ hơn.",
    "Thư viện trường mở cửa từ sáng đến tối, kể cả ngày cuối tuần.",
    "Anh ấy học tiếng Nhật để chuẩn bị cho chuyến công tác sắp tới.",
    "Bà ngoại kể cho chúng tôi nghe chuyện cổ tích về cây khế.",
    "Giá rau xanh ở chợ tăng mạnh sau đợt bão vừa qua.",
    "Xin vui lòng tắt điện thoại trước khi buổi biểu diễn bắt đầu.",
    "Con mèo nhà hàng xóm hay sang vườn nhà tôi bắt chuột.",
    "Sau nhiều năm xa quê, ông trở về thăm ngôi làng cũ.",
    "Học sinh được nghỉ hè sau khi kết thúc kỳ thi cuối năm.",
    "Bác sĩ khuyên mọi người nên uống đủ nước và ngủ đủ giấc.",
    "Đội bóng của trường đã giành chiến thắng trong trận chung kết.",
    "Tàu hỏa chạy dọc theo bờ biển, qua những cánh đồng lúa chín vàng.",
    "Chị gái tôi vừa mở một tiệm bánh nhỏ ở đầu phố.",
    "Các nhà khoa học đang nghiên cứu cách bảo vệ rạn san hô.",
    "Mỗi buổi chiều, ông tôi đều tưới cây và đọc báo ngoài hiên.",
    "Lễ hội mùa xuân thu hút rất nhiều du khách trong và ngoài nước.",
    "Bạn hãy đọc kỹ hướng dẫn trước khi sử dụng sản phẩm.",
    "Cơn gió lạnh thổi qua khiến mọi người phải kéo áo khoác lên cao.",
    "Người nông dân vui mừng vì vụ mùa năm nay bội thu.",
    "Chúng ta cần tiết kiệm điện và nước để bảo vệ môi trường.",
    "Cô giáo khen cả lớp đã chăm chỉ làm bài tập về nhà.",
    "Trên đỉnh núi, sương mù bao phủ cả một vùng rộng lớn.",
    "Quán phở đầu ngõ lúc nào cũng đông khách vào buổi sáng.",
    "Thành phố đang xây thêm cầu mới để giảm ùn tắc giao thông.",
    "Tôi thích nghe nhạc nhẹ mỗi khi cảm thấy mệt mỏi.",
    "Ngày mai, cả gia đình sẽ cùng nhau về quê ăn tết.",
};

} // namespace sound_report

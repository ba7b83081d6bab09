// SPDX-License-Identifier: MIT
#include "audio/mpeg/layer3.h"
#include "audio/mpeg/layer3_tables.h"

namespace vntts::mpeg {

bool ReadSideInfo(const FrameHeader& h, BitReader& br, SideInfo& si) {
  const int channels = h.channels;
  const int granules = h.lsf ? 1 : 2;
  if (h.lsf) {
    si.main_data_begin = static_cast<std::uint16_t>(br.Read(8));
    br.Skip(channels == 1 ? 1 : 2);
    si.scfsi[0] = si.scfsi[1] = 0;
  } else {
    si.main_data_begin = static_cast<std::uint16_t>(br.Read(9));
    br.Skip(channels == 1 ? 5 : 3);
    for (int ch = 0; ch < channels; ++ch)
      si.scfsi[ch] = static_cast<std::uint8_t>(br.Read(4));
  }
  const auto& bands = layer3::BandEdgesFor(h.lsf, h.mpeg25, h.rate_index);
  for (int gr = 0; gr < granules; ++gr) {
    for (int ch = 0; ch < channels; ++ch) {
      GranuleInfo& g = si.gr[gr][ch];
      g.part2_3_length = static_cast<std::uint16_t>(br.Read(12));
      g.big_values = static_cast<std::uint16_t>(br.Read(9));
      if (g.big_values > 288) g.big_values = 288;
      g.global_gain = static_cast<std::uint16_t>(br.Read(8));
      g.scalefac_compress = static_cast<std::uint16_t>(br.Read(h.lsf ? 9 : 4));
      g.window_switching = br.ReadBit();
      if (g.window_switching) {
        g.block_type = static_cast<std::uint8_t>(br.Read(2));
        g.mixed = br.ReadBit();
        for (int r = 0; r < 2; ++r)
          g.table_select[r] = static_cast<std::uint8_t>(br.Read(5));
        g.table_select[2] = 0;
        for (int w = 0; w < 3; ++w)
          g.subblock_gain[w] = static_cast<std::uint8_t>(br.Read(3));
        // A switched granule with block type 0 is not allowed; read it as a start block.
        if (g.block_type == 0) g.block_type = 1;
        // Region 1 starts after three short bands for short blocks, after long band 8
        // (region0_count 7) otherwise; there is no region 2.
        g.region1_start = g.block_type == 2 ? 3 * bands.s[3] : bands.l[8];
        g.region2_start = 576;
      } else {
        g.block_type = 0;
        g.mixed = false;
        for (int r = 0; r < 3; ++r)
          g.table_select[r] = static_cast<std::uint8_t>(br.Read(5));
        g.subblock_gain[0] = g.subblock_gain[1] = g.subblock_gain[2] = 0;
        const unsigned region0 = br.Read(4);
        const unsigned region1 = br.Read(3);
        const unsigned r1 = region0 + 1;
        const unsigned r2 = region0 + region1 + 2;
        g.region1_start = bands.l[r1 > 22 ? 22 : r1];
        g.region2_start = bands.l[r2 > 22 ? 22 : r2];
      }
      g.preflag = h.lsf ? false : br.ReadBit();
      g.scalefac_scale = br.ReadBit();
      g.count1_table_b = br.ReadBit();
    }
  }
  return !br.Overrun();
}

} // namespace vntts::mpeg

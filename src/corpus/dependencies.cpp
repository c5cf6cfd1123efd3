#include "corpus/dependencies.h"

#include <string_view>

namespace colx {

namespace {

constexpr std::string_view dependency_to_cstring_tab[dependencies_count] = {
    "Adv",    "Adv_Ap",    "Adv_Co",    "Adv_Pa",     //
    "AdvAtr", "AdvAtr_Ap", "AdvAtr_Co", "AdvAtr_Pa",  //
    "Apos",   "Apos_Ap",   "Apos_Co",   "Apos_Pa",    //
    "Atr",    "Atr_Ap",    "Atr_Co",    "Atr_Pa",     //
    "AtrAdv", "AtrAdv_Ap", "AtrAdv_Co", "AtrAdv_Pa",  //
    "AtrAtr", "AtrAtr_Ap", "AtrAtr_Co", "AtrAtr_Pa",  //
    "AtrObj", "AtrObj_Ap", "AtrObj_Co", "AtrObj_Pa",  //
    "Atv",    "Atv_Ap",    "Atv_Co",    "Atv_Pa",     //
    "AtvV",   "AtvV_Ap",   "AtvV_Co",   "AtvV_Pa",    //
    "Aux",    "Aux_Ap",    "Aux_Co",    "Aux_Pa",     //
    "AuxC",   "AuxC_Ap",   "AuxC_Co",   "AuxC_Pa",    //
    "AuxG",   "AuxG_Ap",   "AuxG_Co",   "AuxG_Pa",    //
    "AuxK",   "AuxK_Ap",   "AuxK_Co",   "AuxK_Pa",    //
    "AuxO",   "AuxO_Ap",   "AuxO_Co",   "AuxO_Pa",    //
    "AuxP",   "AuxP_Ap",   "AuxP_Co",   "AuxP_Pa",    //
    "AuxR",   "AuxR_Ap",   "AuxR_Co",   "AuxR_Pa",    //
    "AuxS",   "AuxS_Ap",   "AuxS_Co",   "AuxS_Pa",    //
    "AuxT",   "AuxT_Ap",   "AuxT_Co",   "AuxT_Pa",    //
    "AuxV",   "AuxV_Ap",   "AuxV_Co",   "AuxV_Pa",    //
    "AuxX",   "AuxX_Ap",   "AuxX_Co",   "AuxX_Pa",    //
    "AuxY",   "AuxY_Ap",   "AuxY_Co",   "AuxY_Pa",    //
    "AuxZ",   "AuxZ_Ap",   "AuxZ_Co",   "AuxZ_Pa",    //
    "Coord",  "Coord_Ap",  "Coord_Co",  "Coord_Pa",   //
    "ExD",    "ExD_Ap",    "ExD_Co",    "ExD_Pa",     //
    "Head",                                           //
    "Obj",    "Obj_Ap",    "Obj_Co",    "Obj_Pa",     //
    "ObjAtr", "ObjAtr_Ap", "ObjAtr_Co", "ObjAtr_Pa",  //
    "Pnom",   "Pnom_Ap",   "Pnom_Co",   "Pnom_Pa",    //
    "Pred",   "Pred_Ap",   "Pred_Co",   "Pred_Pa",    //
    "Sb",     "Sb_Ap",     "Sb_Co",     "Sb_Pa",      //
    "Undef",
};

}  // namespace

namespace dependency {
std::uint8_t head = 0;
std::uint8_t undef = 0;
}  // namespace dependency

std::map<std::string, std::uint8_t> _init_str2dep() {
  std::map<std::string, std::uint8_t> codes;
  for (std::uint8_t code = 0; code < dependencies_count; ++code) {
    const std::string_view name = dependency_to_cstring_tab[code];
    codes.emplace(name, code);
    if (name == "Head") dependency::head = code;
    if (name == "Undef") dependency::undef = code;
  }
  return codes;
}

std::uint8_t string2dependency(const std::string& name) {
  static const std::map<std::string, std::uint8_t> codes = _init_str2dep();
  const auto found = codes.find(name);
  return found == codes.end() ? dependency::undef : found->second;
}

std::string_view dependency2cstring(std::uint8_t code) {
  return dependency_to_cstring_tab[code];
}

}  // namespace colx

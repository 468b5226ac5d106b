/** What goes wrong with the program itself. A request that the host refuses throws ApiFailure. */
export class LootHostFailure extends Error {
  override readonly name = "LootHostFailure";
}

// Chooses what the next craft of a recipe gives, and shows what chance would give.
import { useSignal } from "@preact/signals";
import { call } from "../../api/client";
import type { Schemas } from "../../api/types";
import { outcome } from "../../state/crafts";
import { lootText } from "../../state/names";
import { controls } from "../../state/stream";
import { useAction } from "../../ui/action";
import { Badge, Button } from "../../ui/controls";
import { useFetched } from "../../ui/fetched";

type Prepared = Schemas["HostNextResult"];
type Chance = Schemas["HostOdds"]["items"][number];

const trials = 20_000;
const percent = (share: number) => `${(100 * share).toFixed(share < 0.1 ? 1 : 0)} %`;

function ChanceRow({ chance, onChoose }: { chance: Chance; onChoose: () => void }) {
  const share = chance.exact ?? chance.share;
  const given = chance.drawn > 0 ? Math.round(chance.quantity / chance.drawn) : 1;
  return (
    <li class="chance">
      <span class="chance-name">{lootText(chance.lootName)}</span>
      <span class="bar" aria-hidden="true">
        <span style={{ width: `${100 * share}%` }} />
      </span>
      <span class="chance-share" title={`${percent(chance.low)} to ${percent(chance.high)} in ${trials.toLocaleString("en")} trials`}>
        {percent(share)}
      </span>
      <Button kind="plain" icon="bolt" label={`Add ${given} ${chance.lootName} to the next result`} onClick={onChoose} />
    </li>
  );
}

function Chosen({ list, recipe, onDone }: { list: Prepared["added"]; recipe: string; onDone: () => void }) {
  const prepare = useAction(async () => {
    await call("post", "/_host/next-result", { body: { recipe, added: list, times: 1 } });
    onDone();
    return "The next craft gives this";
  });
  if (list.length === 0) return null;
  return (
    <p class="row">
      {list.map((entry) => (
        <Badge kind="strong" key={entry.lootName}>
          {entry.count} {lootText(entry.lootName)}
        </Badge>
      ))}
      <Button kind="main" isRunning={prepare.isRunning} onClick={() => void prepare.run()}>
        Make it the next result
      </Button>
      <Button kind="plain" onClick={onDone}>
        Cancel
      </Button>
    </p>
  );
}

// The host forgets all prepared results at once: those of other recipes are prepared again, in their order.
async function forgetOf(recipe: string): Promise<void> {
  const list = await call("get", "/_host/next-result");
  await call("delete", "/_host/next-result");
  for (const entry of list) {
    if (entry.recipe !== recipe) await call("post", "/_host/next-result", { body: entry });
  }
}

export function NextResult({ recipe }: { recipe: string }) {
  const chosen = useSignal<Prepared["added"]>([]);
  const odds = useFetched(() => call("get", "/_host/odds/{recipe}", { path: { recipe }, query: { trials } }), recipe);
  const prepared = useFetched(
    () => call("get", "/_host/next-result"),
    `${controls.value} ${outcome.value?.id ?? 0}`,
  );
  const forget = useAction(async () => {
    await forgetOf(recipe);
    prepared.again();
  });
  const mine = prepared.value?.filter((entry) => entry.recipe === recipe) ?? [];
  if (odds.failure) return <p class="quiet">{odds.failure}</p>;
  const sorted = [...(odds.value?.items ?? [])].sort((a, b) => (b.exact ?? b.share) - (a.exact ?? a.share));
  const add = (chance: Chance) => {
    const count = chance.drawn > 0 ? Math.round(chance.quantity / chance.drawn) : 1;
    chosen.value = [...chosen.value.filter((entry) => entry.lootName !== chance.lootName), { lootName: chance.lootName, count }];
  };
  return (
    <div class="next-result">
      {mine.length > 0 && (
        <p class="row">
          <span>Next:</span>
          {mine.flatMap((entry) => entry.added).map((entry) => (
            <Badge kind="good" key={entry.lootName}>
              {entry.count ?? 1} {lootText(entry.lootName)}
            </Badge>
          ))}
          <Button kind="plain" isRunning={forget.isRunning} onClick={() => void forget.run()}>
            Leave it to chance
          </Button>
        </p>
      )}
      <Chosen list={chosen.value} recipe={recipe} onDone={() => (chosen.value = [])} />
      <ul class="chances">
        {sorted.map((chance) => (
          <ChanceRow key={chance.lootName} chance={chance} onChoose={() => add(chance)} />
        ))}
      </ul>
      {odds.value && sorted.length === 0 && <p class="quiet">Nothing is left to chance.</p>}
    </div>
  );
}
